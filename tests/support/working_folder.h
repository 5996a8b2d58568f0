#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/windows.h"

inline std::string CurrentFolder() {
    char folder[MAX_PATH];
    return std::string(folder, GetCurrentDirectoryA(sizeof folder, folder));
}

// Another working folder for the process, for as long as this lives.
class WorkingFolder {
public:
    explicit WorkingFolder(const std::string& folder) : before_(CurrentFolder()) {
        EXPECT_TRUE(SetCurrentDirectoryA(folder.c_str())) << folder;
    }
    ~WorkingFolder() { SetCurrentDirectoryA(before_.c_str()); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
    const std::string before_;
};
