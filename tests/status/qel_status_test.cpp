#include "status/qel_status.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <string>
#include <typeinfo>

namespace {

// An object as "class status/error number! text"; the "!" stands for an error.
std::string Show(const XQELMsg& object) {
    const auto* const number = dynamic_cast<const XQELErrno*>(&object);
    const std::type_info& type = typeid(object);
    std::string text = type == typeid(XQELFile)     ? "File "
                       : type == typeid(XQELErrno)  ? "Errno "
                       : type == typeid(XQELStatus) ? "Status "
                                                    : "another ";
    text += std::to_string(dynamic_cast<const XQELStatus&>(object).Status());
    if (number) text += "/" + std::to_string(number->Errno());
    return text + (object.IsError() ? "! " : " ") + std::string(object.GetErrMessEx());
}

// What a call throws, as it is shown.
std::string Thrown(const std::function<void()>& call) {
    try {
        call();
    } catch (const XQELMsg& thrown) {
        return Show(thrown);
    }
    return "nothing";
}

TEST(QelStatus, ConstructionRecordsAndNeverThrows) {
    EXPECT_EQ("Status 0 ", Show(XQELStatus()));
    EXPECT_EQ("Status 5! ", Show(XQELStatus(5, true)));
    EXPECT_EQ("Status -1! a.txt", Show(XQELStatus(-1, "a.txt", true)));
    EXPECT_EQ("Status 1! a.txt", Show(XQELStatus(1, CQELString("a.txt"), true)));
    EXPECT_EQ("Status 1! ", Show(XQELStatus(1, static_cast<const char*>(nullptr), true)));
    EXPECT_EQ("Errno 0/2! ", Show(XQELErrno(ENOENT, true)));
    EXPECT_EQ("File 0/0 ", Show(XQELFile()));
}

TEST(QelStatus, RaisesErrorsByDefaultAsItsArgumentSays) {
    EXPECT_EQ("Status 4! ", Thrown([] { XQELStatus().SetError(4); }));
    EXPECT_EQ("Status 4! a", Thrown([] { XQELStatus(0, "a", true).SetError(4); }));
    EXPECT_EQ("Errno 0/4! ", Thrown([] { XQELErrno(0, true).SetError(4); }));
    EXPECT_EQ("File 4/0! ", Thrown([] { XQELFile().SetError(4, 0); }));
    const auto quiet = [] {
        XQELStatus(0, false).SetError(4);
        XQELStatus(0, CQELString("a"), false).SetError(4);
        XQELErrno(0, false).SetError(4);
        XQELFile(false).SetError(4, 5);
        XQELStatus(4, true).SetError(0);
        XQELErrno(4, true).SetError(0);
        XQELFile(true).SetError(0, 0);
        XQELStatus(4, false).SetError();
    };
    EXPECT_EQ("nothing", Thrown(quiet));
    // Without a code whatever is recorded.
    EXPECT_EQ("Status 0 ", Thrown([] { XQELStatus(0, true).SetError(); }));
    EXPECT_EQ("Errno 0/0 ", Thrown([] { XQELErrno(0, true).SetError(); }));
    EXPECT_EQ("File 0/0 ", Thrown([] { XQELFile(true).SetError(); }));
}

TEST(QelStatus, RecordingKeepsTheLastCode) {
    const XQELStatus status(0, "a.txt", true);
    EXPECT_EQ("Status 4! a.txt", Thrown([&] { status.SetError(4); }));
    EXPECT_EQ("Status 4! a.txt", Show(status));
    const XQELFile file(false);
    file.SetErrMessEx("a.txt");
    file.SetError(0, 2);
    EXPECT_EQ("File 0/2! a.txt", Show(file));
    file.SetError(17, 0);
    EXPECT_EQ("File 17/0! a.txt", Show(file));
    file.Clear();
    EXPECT_EQ("File 0/0 a.txt", Show(file));
    file.SetErrMessEx(nullptr);
    EXPECT_EQ("File 0/0 ", Show(file));
}

TEST(QelStatus, EveryHandlerOfTheFamilyCatches) {
    const auto fail = [] { XQELFile(true).SetError(17, 0); };
    EXPECT_THROW(fail(), XQELBaseMsg);
    EXPECT_THROW(fail(), XQELStatus);
    EXPECT_THROW(fail(), XQELErrno);
    EXPECT_THROW(XQELStatus(0, true).SetError(1), XQELBaseMsg);
    class OwnFile : public XQELFile {};  // a caller's class is thrown as the status class below it
    EXPECT_EQ("File 17/0! ", Thrown([] { OwnFile().SetError(17, 0); }));
}

TEST(QelStatus, ErrnoLooksAtItsErrorNumberOnly) {
    const XQELErrno number(0, false), raising(0, true);
    number.XQELStatus::SetError(3);
    EXPECT_EQ("Errno 3/0 ", Show(number));
    number.SetError(ENOENT);
    EXPECT_EQ("Errno 3/2! ", Show(number));
    number.Clear();
    EXPECT_EQ("Errno 3/0 ", Show(number));
    // The status is an error for XQELStatus, though the object itself denies it.
    EXPECT_EQ("Errno 3/0 ", Thrown([&] { raising.XQELStatus::SetError(3); }));
}

TEST(QelStatus, RaisingFileStatusThrowsBeforeItsErrorNumber) {
    const XQELFile file(true);
    EXPECT_EQ("File 0/2! ", Thrown([&] { file.SetError(0, ENOENT); }));
    EXPECT_EQ("File 17/0! ", Thrown([&] { file.SetError(17, EACCES); }));
    EXPECT_EQ("File 17/0! ", Show(file));
}

TEST(QelStatus, FileMessageShowsTheStatusOnly) {
    const XQELFile file(false);
    file.SetError(0, ENOENT);
    EXPECT_STREQ("Status = 0", file.ErrorMessage());
    file.SetError(17, ENOENT);
    EXPECT_STREQ("Status = 17", file.ErrorMessage());
    EXPECT_STREQ("Status = -1", XQELStatus(-1, "a.txt", true).ErrorMessage());
    EXPECT_STREQ("No such file or directory", XQELErrno(ENOENT, true).ErrorMessage());
}

TEST(QelStatus, CopiesTakeEveryFieldAndTheRaiseFlag) {
    XQELFile raising(true);
    Thrown([&] { raising.SetError(0, ENOENT); });
    raising.SetErrMessEx("a.txt");
    const XQELFile copy(raising);
    XQELFile assigned(false);
    assigned = raising;
    for (const XQELFile* file : {&copy, static_cast<const XQELFile*>(&assigned)}) {
        EXPECT_EQ("File 0/2! a.txt", Show(*file));
        EXPECT_EQ("File 1/0! a.txt", Thrown([&] { file->SetError(1, 0); }));
    }
    assigned = XQELFile(false);
    EXPECT_EQ("nothing", Thrown([&] { assigned.SetError(1, 0); }));
    EXPECT_EQ("File 0/2! a.txt", Show(raising));
}

}  // namespace
