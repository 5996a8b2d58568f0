#pragma once

// Replaces a function that a loaded module imports, for as long as this lives: the way to let a
// system or runtime call fail inside the DLL. Windows only.

#include <gtest/gtest.h>

#include <cstring>

#include "platform/windows.h"

class ImportPatch {
public:
    // `function` is imported by name, from whatever module.
    ImportPatch(const char* module, const char* function, void* replacement)
        : slot_(Find(::GetModuleHandleA(module), function)) {
        EXPECT_NE(nullptr, slot_) << module << " imports no " << function;
        if (slot_) original_ = Write(replacement);
    }
    ~ImportPatch() {
        if (slot_) Write(original_);
    }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

private:
    template <typename T>
    static T* At(HMODULE module, ULONGLONG offset) {
        return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(module) + offset);
    }

    static void** Find(HMODULE module, const char* function) {
        if (!module) return nullptr;
        const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
        const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<ULONGLONG>(dos->e_lfanew));
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        const auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
        for (; from->Name != 0; ++from) {
            const auto* name = At<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
            auto* slot = At<void*>(module, from->FirstThunk);
            for (; name->u1.AddressOfData != 0; ++name, ++slot) {
                if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
                const auto* import = At<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
                const char* const text = reinterpret_cast<const char*>(import->Name);
                if (std::strcmp(text, function) == 0) return slot;
            }
        }
        return nullptr;
    }

    void* Write(void* function) {
        DWORD before;
        ::VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &before);
        void* const old = *slot_;
        *slot_ = function;
        ::VirtualProtect(slot_, sizeof *slot_, before, &before);
        return old;
    }

    void** slot_;
    void* original_ = nullptr;
};
