#pragma once

// The library's waiting for busy files, taken out of time: while a Pauses lives, each pause is
// counted, and `action`, if any, runs instead of it with its number (1, 2, ...).

#include <functional>
#include <utility>

#include "support/import_patch.h"

class Pauses {
public:
    explicit Pauses(std::function<void(int)> action = {}) {
        State() = {0, true, std::move(action)};
    }
    ~Pauses() { State() = {}; }

    static int count() { return State().count; }
    // Whether all of them were the 200 ms that callers may count on.
    static bool were_regular() { return State().regular; }

private:
    struct Record {
        int count = 0;
        bool regular = true;
        std::function<void(int)> action;
    };
    static Record& State() {
        static Record record;
        return record;
    }
    static void WINAPI Take(DWORD ms) {
        Record& record = State();
        ++record.count;
        record.regular = record.regular && ms == 200;
        if (record.action) record.action(record.count);
    }

    ImportPatch patch_{kLibrary, "Sleep", &Take};
};
