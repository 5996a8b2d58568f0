#include "platform/last_error.h"

#include <cerrno>

#include "base/code_table.h"
#include "platform/windows.h"

namespace kit {
namespace {

// The C runtime's own mapping, as far as file operations meet it.
constexpr CodeRow kWin32ToErrno[] = {
    {0, 0, 0},
    {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ENOENT},
    {ERROR_TOO_MANY_OPEN_FILES, ERROR_TOO_MANY_OPEN_FILES, EMFILE},
    {ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED, EACCES},
    {ERROR_INVALID_HANDLE, ERROR_INVALID_HANDLE, EBADF},
    {ERROR_NOT_ENOUGH_MEMORY, ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
    {ERROR_INVALID_DRIVE, ERROR_INVALID_DRIVE, ENOENT},
    {ERROR_CURRENT_DIRECTORY, ERROR_CURRENT_DIRECTORY, EACCES},
    {ERROR_NOT_SAME_DEVICE, ERROR_NOT_SAME_DEVICE, EXDEV},
    {ERROR_NO_MORE_FILES, ERROR_NO_MORE_FILES, ENOENT},
    {ERROR_WRITE_PROTECT, ERROR_SHARING_BUFFER_EXCEEDED, EACCES},  // 19..36
    {ERROR_BAD_NETPATH, ERROR_BAD_NETPATH, ENOENT},
    {ERROR_NETWORK_ACCESS_DENIED, ERROR_NETWORK_ACCESS_DENIED, EACCES},
    {ERROR_BAD_NET_NAME, ERROR_BAD_NET_NAME, ENOENT},
    {ERROR_FILE_EXISTS, ERROR_FILE_EXISTS, EEXIST},
    {ERROR_CANNOT_MAKE, ERROR_FAIL_I24, EACCES},  // 82, 83
    {ERROR_DRIVE_LOCKED, ERROR_DRIVE_LOCKED, EACCES},
    {ERROR_DISK_FULL, ERROR_DISK_FULL, ENOSPC},
    {ERROR_DIR_NOT_EMPTY, ERROR_DIR_NOT_EMPTY, ENOTEMPTY},
    {ERROR_NOT_LOCKED, ERROR_NOT_LOCKED, EACCES},
    {ERROR_BAD_PATHNAME, ERROR_BAD_PATHNAME, ENOENT},
    {ERROR_LOCK_FAILED, ERROR_LOCK_FAILED, EACCES},
    {ERROR_ALREADY_EXISTS, ERROR_ALREADY_EXISTS, EEXIST},
};
static_assert(IsOrdered(kWin32ToErrno), "Convert() searches by halves");

}  // namespace

SystemError SystemError::Capture() {
    SystemError error;
    error.win32 = ::GetLastError();
    error.c_error = errno;
    return error;
}

int ErrnoFromWin32(ulong32 code) { return static_cast<int>(Convert(kWin32ToErrno, code, EINVAL)); }

}  // namespace kit
