#pragma once

#include "base/export.h"
#include "base/types.h"

// Destroying the contents of files before they are deleted. Results are error codes of the
// platform; 0 is success. Nothing throws.

namespace QELUtils {

// Overwrites a file three times and deletes it: with random words, with the same words of which
// every other one is inverted, with new random words. Each pass is committed to the disk. The words
// come from rand(), which is not seeded here. Length and name stay until the end; a read-only file
// is wiped too, a link's target in its place.
//   path  at most 259 characters; 206 for a longer one, before anything is touched
// When a pass cannot be written, the file is kept and the error returned.
QELKIT_API ulong32 WipeFile(const char* path);

// Wipes the files of a folder that match a mask, with `recurse` (not 0) also below it.
//
// Meant to be called once in a process: the first call that recurses reads its arguments as below,
// and every later call in another way: `folder` is then a plain folder, its files that match `mask`
// are wiped, and whether its subfolders are removed is what the first call decided.
//   folder   first call: a folder's path, whose whole tree is wiped and removed with it, or a path
//            whose last part is a mask, for the files that match it; the folders below are removed
//            as well if the mask is "*.*" or "*"
//   mask     room for 260 characters; the first call writes the mask there
//   recurse  0: no folder is entered
// A junction or folder link is never entered; where folders are removed, it is removed. A file link
// is deleted and its target left alone.
//
// Returns, with `recurse`, 0 whatever became of the files; without it, 0, or 0xFFFFFFFF if there is
// a folder among the entries, or the first call's error when nothing can be found. A plain folder
// without `recurse` is such an entry itself: nothing is wiped. Null arguments: 87. A path that
// does not fit 260 characters: 206, before anything in it is touched.
// Two process-wide flags are not guarded: no concurrent calls.
QELKIT_API ulong32 WipeDirectory(const char* folder, char* mask, int recurse);

}  // namespace QELUtils
