#pragma once

// Failures that no real file or system of a test machine can give: replaces a function that a
// loaded module imports, for as long as this lives.
//
//     ImportPatch sleep(kLibrary, "Sleep", &CountPauses);
//     ... the library's calls of Sleep arrive in CountPauses ...
//
// Only calls from that module are diverted. Modules of this toolchain import by name.

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "platform/windows.h"

inline constexpr char kLibrary[] = "QELKIT2_64.dll";

class ImportPatch {
public:
    template <typename Function>
    ImportPatch(const char* module, const char* function, Function* replacement)
        : slot_(FindSlot(GetModuleHandleA(module), function)) {
        EXPECT_NE(nullptr, slot_) << module << " does not import " << function;
        if (slot_) original_ = Store(reinterpret_cast<void*>(replacement));
    }
    ~ImportPatch() {
        if (slot_) Store(original_);
    }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

private:
    template <typename Row>
    static Row* At(HMODULE module, DWORD offset) {
        return reinterpret_cast<Row*>(reinterpret_cast<unsigned char*>(module) + offset);
    }

    // The cell of the module's import table that holds the function's address.
    static void** FindSlot(HMODULE module, const char* function) {
        if (!module) return nullptr;
        const auto* const dos = At<IMAGE_DOS_HEADER>(module, 0);
        const auto* const nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
        const auto& table = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, table.VirtualAddress);
        for (; library->Name != 0; ++library) {
            const auto* name = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
            auto* cell = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
            for (; name->u1.AddressOfData != 0; ++name, ++cell) {
                if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
                const auto* const entry =
                    At<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(name->u1.AddressOfData));
                if (std::strcmp(reinterpret_cast<const char*>(entry->Name), function) == 0) {
                    return reinterpret_cast<void**>(&cell->u1.Function);
                }
            }
        }
        return nullptr;
    }

    // Writes the cell, which lies on a read-only page; returns what it held.
    void* Store(void* function) {
        DWORD before;
        VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &before);
        void* const old = std::exchange(*slot_, function);
        VirtualProtect(slot_, sizeof *slot_, before, &before);
        return old;
    }

    void** const slot_;
    void* original_ = nullptr;
};
