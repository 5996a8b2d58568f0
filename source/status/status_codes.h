#pragma once

// The status codes that code decides by. A status is a signed 32-bit int: 0 is success, 1-244,
// 500-502 and 1001-1045 name failures, and the message of code N is string resource N of the
// library (resources/messages_ru.rc has them all).

constexpr int kStatusOk = 0;
constexpr int kStatusFileNotFound = 4;
constexpr int kStatusReadFailed = 5;
constexpr int kStatusWriteFailed = 6;
constexpr int kStatusOutOfMemory = 16;
constexpr int kStatusOpenFailed = 17;
constexpr int kStatusSeekFailed = 21;
constexpr int kStatusBadParameter = 28;
constexpr int kStatusUnknown = 36;
constexpr int kStatusIndexOutOfBounds = 37;
constexpr int kStatusAttributesFailed = 41;
constexpr int kStatusRemoveFailed = 43;
constexpr int kStatusRenameFailed = 44;
constexpr int kStatusLengthFailed = 45;
constexpr int kStatusCompressFailed = 47;
constexpr int kStatusFindFailed = 52;
constexpr int kStatusSetFolderFailed = 60;
constexpr int kStatusMakeFolderFailed = 61;
constexpr int kStatusRemoveFolderFailed = 62;
constexpr int kStatusCreateFailed = 63;
constexpr int kStatusCopyFailed = 64;
constexpr int kStatusFileDamaged = 74;
constexpr int kStatusNotImplemented = 115;
constexpr int kStatusSearchFinished = 116;
constexpr int kStatusInternalError = 117;
constexpr int kStatusPositionFailed = 118;
constexpr int kStatusTruncateFailed = 119;
constexpr int kStatusFlushFailed = 120;
constexpr int kStatusFileExists = 121;
constexpr int kStatusSetTimeFailed = 122;
constexpr int kStatusGetTimeFailed = 123;
constexpr int kStatusMoveFailed = 124;
constexpr int kStatusDiskSpaceFailed = 126;
constexpr int kStatusDataError = 131;
constexpr int kStatusLibraryLoadFailed = 146;
constexpr int kStatusVolumeInformationFailed = 187;
constexpr int kStatusAccessDenied = 501;
