#pragma once

// The status codes that code decides by. A status is a signed 32-bit int: 0 is success, 1-244,
// 500-502 and 1001-1045 name failures, and the message of code N is string resource N of the
// library (resources/messages_ru.rc has them all).

constexpr int kStatusOk = 0;                         // success
constexpr int kStatusFileNotFound = 4;               // there is no such file
constexpr int kStatusReadFailed = 5;                 // a file could not be read
constexpr int kStatusWriteFailed = 6;                // a file could not be written
constexpr int kStatusOutOfMemory = 16;               // memory ran out
constexpr int kStatusOpenFailed = 17;                // a file could not be opened
constexpr int kStatusSeekFailed = 21;                // a position in a file could not be taken
constexpr int kStatusBadParameter = 28;              // an argument is none that the function takes
constexpr int kStatusUnknown = 36;                   // a failure that has no code of its own
constexpr int kStatusIndexOutOfBounds = 37;          // an index is outside
constexpr int kStatusAttributesFailed = 41;          // attributes could not be read or set
constexpr int kStatusRemoveFailed = 43;              // a file could not be deleted
constexpr int kStatusRenameFailed = 44;              // a file could not be renamed
constexpr int kStatusLengthFailed = 45;              // the length of a file could not be had
constexpr int kStatusCompressFailed = 47;            // data or a file could not be compressed
constexpr int kStatusFindFailed = 52;                // a search for files could not begin
constexpr int kStatusSetFolderFailed = 60;           // the working folder could not be set
constexpr int kStatusMakeFolderFailed = 61;          // a folder could not be made
constexpr int kStatusRemoveFolderFailed = 62;        // a folder could not be removed
constexpr int kStatusCreateFailed = 63;              // a file could not be made
constexpr int kStatusCopyFailed = 64;                // a file could not be copied
constexpr int kStatusFileDamaged = 74;               // the contents of a file are no such contents
constexpr int kStatusNotImplemented = 115;           // the function is not supported
constexpr int kStatusSearchFinished = 116;           // a search has come to its end
constexpr int kStatusInternalError = 117;            // an object is not open, a body is missing
constexpr int kStatusPositionFailed = 118;           // the position in a file could not be had
constexpr int kStatusTruncateFailed = 119;           // a file could not be cut
constexpr int kStatusFlushFailed = 120;              // buffered data could not be written
constexpr int kStatusFileExists = 121;               // the file is there already
constexpr int kStatusSetTimeFailed = 122;            // the time of a file could not be set
constexpr int kStatusGetTimeFailed = 123;            // the time of a file could not be had
constexpr int kStatusMoveFailed = 124;               // a file could not be moved
constexpr int kStatusDiskSpaceFailed = 126;          // the room on a disk could not be had
constexpr int kStatusDataError = 131;                // data is not of its form
constexpr int kStatusLibraryLoadFailed = 146;        // a library could not be loaded
constexpr int kStatusVolumeInformationFailed = 187;  // nothing is known of a volume
constexpr int kStatusAccessDenied = 501;             // access is denied, or somebody holds the file
