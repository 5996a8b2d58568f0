#pragma once

#include <utility>

#include "platform/windows.h"

namespace kit {

// The sole owner of one system resource. Traits gives its Type, its Invalid() value and Close().
template <typename Traits>
class Owner {
public:
    using Type = typename Traits::Type;

    Owner() = default;
    explicit Owner(Type resource) : resource_(resource) {}
    Owner(Owner&& other) noexcept : resource_(other.Release()) {}
    Owner& operator=(Owner&& other) noexcept {
        Reset(other.Release());
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { Reset(); }

    explicit operator bool() const { return resource_ != Traits::Invalid(); }
    Type get() const { return resource_; }
    Type Release() { return std::exchange(resource_, Traits::Invalid()); }
    void Reset(Type resource = Traits::Invalid()) {
        const Type old = std::exchange(resource_, resource);
        if (old != Traits::Invalid() && old != resource) Traits::Close(old);
    }
    // For calls that hand the resource out through a pointer. Drops what is owned first.
    Type* Receive() {
        Reset();
        return &resource_;
    }

private:
    Type resource_ = Traits::Invalid();
};

struct FileHandleTraits {  // CreateFile: invalid is -1
    using Type = HANDLE;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) { ::CloseHandle(handle); }
};
struct KernelHandleTraits {  // events, mutexes, mappings, threads: invalid is null
    using Type = HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type handle) { ::CloseHandle(handle); }
};
struct FindHandleTraits {
    using Type = HANDLE;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) { ::FindClose(handle); }
};
struct ModuleTraits {
    using Type = HMODULE;
    static Type Invalid() { return nullptr; }
    static void Close(Type module) { ::FreeLibrary(module); }
};
struct RegistryKeyTraits {
    using Type = HKEY;
    static Type Invalid() { return nullptr; }
    static void Close(Type key) { ::RegCloseKey(key); }
};
struct LocalBlockTraits {
    using Type = void*;
    static Type Invalid() { return nullptr; }
    static void Close(Type block) { ::LocalFree(block); }
};
struct MappedViewTraits {
    using Type = void*;
    static Type Invalid() { return nullptr; }
    static void Close(Type view) { ::UnmapViewOfFile(view); }
};

using FileHandle = Owner<FileHandleTraits>;
using KernelHandle = Owner<KernelHandleTraits>;
using FindHandle = Owner<FindHandleTraits>;
using Module = Owner<ModuleTraits>;
using RegistryKey = Owner<RegistryKeyTraits>;
using LocalBlock = Owner<LocalBlockTraits>;
using MappedView = Owner<MappedViewTraits>;

}  // namespace kit
