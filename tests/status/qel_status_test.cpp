#include "status/qel_status.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>

namespace {

constexpr const char* kNothing = "nothing";

template <typename Class>
std::string NameOf() {
    return typeid(Class).name();
}

// The name of the class that a call throws.
template <typename Call>
std::string ThrownBy(Call call) {
    try {
        call();
        return kNothing;
    } catch (const XQELMsg& thrown) {
        return typeid(thrown).name();
    }
}

// The copy that a call throws.
template <typename Status, typename Call>
Status Caught(Call call) {
    try {
        call();
    } catch (const Status& thrown) {
        return thrown;
    }
    throw std::logic_error("nothing was thrown");
}

std::string Text(const CQELString& text) { return std::string(text); }

TEST(QelStatus, ConstructionRecordsAndNeverThrows) {
    EXPECT_EQ(0, XQELStatus().Status());
    EXPECT_FALSE(XQELStatus().IsError());

    const XQELStatus status(5, true);
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(5, status.Status());
    EXPECT_EQ("", Text(status.GetErrMessEx()));

    EXPECT_EQ("a.txt", Text(XQELStatus(-1, "a.txt", true).GetErrMessEx()));
    EXPECT_EQ("a.txt", Text(XQELStatus(1, CQELString("a.txt"), true).GetErrMessEx()));
    EXPECT_EQ("", Text(XQELStatus(1, static_cast<const char*>(nullptr), true).GetErrMessEx()));

    const XQELErrno number(ENOENT, true);
    EXPECT_EQ(ENOENT, number.Errno());
    EXPECT_EQ(0, number.Status());

    const XQELFile file;
    EXPECT_FALSE(file.IsError());
    EXPECT_EQ(0, file.Status());
    EXPECT_EQ(0, file.Errno());
}

TEST(QelStatus, RaisesByDefaultAsItsArgumentSays) {
    EXPECT_EQ(NameOf<XQELStatus>(), ThrownBy([] { XQELStatus().SetError(4); }));
    EXPECT_EQ(NameOf<XQELFile>(), ThrownBy([] { XQELFile().SetError(4, 0); }));
    EXPECT_EQ(NameOf<XQELStatus>(), ThrownBy([] { XQELStatus(0, "", true).SetError(4); }));
    EXPECT_EQ(NameOf<XQELErrno>(), ThrownBy([] { XQELErrno(0, true).SetError(4); }));
    EXPECT_EQ(kNothing, ThrownBy([] { XQELStatus(0, false).SetError(4); }));
    EXPECT_EQ(kNothing, ThrownBy([] { XQELStatus(0, CQELString("a"), false).SetError(4); }));
    EXPECT_EQ(kNothing, ThrownBy([] { XQELErrno(0, false).SetError(4); }));
    EXPECT_EQ(kNothing, ThrownBy([] { XQELFile(false).SetError(4, 5); }));
}

TEST(QelStatus, ThrownCopyAndThrowerBothHoldTheFailure) {
    const XQELStatus status(0, "a.txt", true);
    const XQELStatus thrown = Caught<XQELStatus>([&] { status.SetError(4); });
    EXPECT_EQ(4, status.Status());
    EXPECT_EQ(4, thrown.Status());
    EXPECT_EQ("a.txt", Text(thrown.GetErrMessEx()));
    EXPECT_THROW(thrown.SetError(5), XQELStatus) << "the copy keeps the raise flag";
    EXPECT_EQ(4, status.Status()) << "and is an object of its own";
}

TEST(QelStatus, RecordingKeepsTheLastCodeAndZeroIsNoError) {
    const XQELStatus status(0, false);
    status.SetError(4);
    status.SetError(5);
    EXPECT_EQ(5, status.Status());
    status.SetError(0);
    EXPECT_FALSE(status.IsError());

    EXPECT_NO_THROW(XQELStatus(4, true).SetError(0));
    EXPECT_NO_THROW(XQELErrno(4, true).SetError(0));
    EXPECT_NO_THROW(XQELFile(true).SetError(0, 0));
}

TEST(QelStatus, EveryHandlerOfTheFamilyCatches) {
    const XQELFile file(true);
    const auto fail = [&] { file.SetError(17, 0); };
    EXPECT_THROW(fail(), XQELBaseMsg);
    EXPECT_THROW(fail(), XQELMsg);
    EXPECT_THROW(fail(), XQELStatus);
    EXPECT_THROW(fail(), XQELErrno);
    EXPECT_THROW(fail(), XQELFile);
    EXPECT_THROW(XQELStatus(0, true).SetError(1), XQELBaseMsg);
}

TEST(QelStatus, SetErrorWithoutACodeThrowsWhateverIsRecorded) {
    EXPECT_EQ(NameOf<XQELStatus>(), ThrownBy([] { XQELStatus(0, true).SetError(); }));
    EXPECT_EQ(NameOf<XQELErrno>(), ThrownBy([] { XQELErrno(0, true).SetError(); }));
    EXPECT_EQ(NameOf<XQELFile>(), ThrownBy([] { XQELFile(true).SetError(); }));
    EXPECT_EQ(kNothing, ThrownBy([] { XQELStatus(4, false).SetError(); }));
}

TEST(QelStatus, ErrnoLooksAtItsErrorNumberOnly) {
    const XQELErrno number(0, false);
    number.XQELStatus::SetError(3);
    EXPECT_FALSE(number.IsError());
    EXPECT_EQ(3, number.Status());
    number.SetError(ENOENT);
    EXPECT_TRUE(number.IsError());
    number.Clear();
    EXPECT_FALSE(number.IsError());
    EXPECT_EQ(3, number.Status()) << "Clear leaves the status";
}

// The status is an error for XQELStatus, though the object itself denies it; what is thrown is
// still the object's own class.
TEST(QelStatus, ErrnoRaisesOnAStatusToo) {
    const XQELErrno number(0, true);
    EXPECT_EQ(NameOf<XQELErrno>(), ThrownBy([&] { number.XQELStatus::SetError(3); }));
}

TEST(QelStatus, FileReportsEitherPart) {
    const XQELFile file(false);
    file.SetError(0, ENOENT);
    EXPECT_TRUE(file.IsError());
    EXPECT_EQ(0, file.Status());
    EXPECT_EQ(ENOENT, file.Errno());
    file.SetError(17, 0);
    EXPECT_TRUE(file.IsError());
    EXPECT_EQ(0, file.Errno()) << "every report starts from a cleared object";
    file.SetError(17, ENOENT);
    EXPECT_EQ(17, file.Status());
    EXPECT_EQ(ENOENT, file.Errno());
    file.Clear();
    EXPECT_FALSE(file.IsError());
    EXPECT_EQ(0, file.Status());
    EXPECT_EQ(0, file.Errno());
}

TEST(QelStatus, RaisingFileStatusThrowsBeforeItsErrorNumber) {
    const XQELFile file(true);
    const XQELFile with_number = Caught<XQELFile>([&] { file.SetError(0, ENOENT); });
    EXPECT_EQ(0, with_number.Status());
    EXPECT_EQ(ENOENT, with_number.Errno());

    const XQELFile thrown = Caught<XQELFile>([&] { file.SetError(17, EACCES); });
    EXPECT_EQ(17, thrown.Status());
    EXPECT_EQ(0, thrown.Errno()) << "neither the new number nor the one before";
    EXPECT_EQ(17, file.Status());
    EXPECT_EQ(0, file.Errno());
}

TEST(QelStatus, MessagesAreTechnical) {
    EXPECT_EQ("Status = 4", Text(XQELStatus(4, "a.txt", true).ErrorMessage()));
    EXPECT_EQ("Status = -1", Text(XQELStatus(-1).ErrorMessage()));
    EXPECT_EQ("No such file or directory", Text(XQELErrno(ENOENT, true).ErrorMessage()));
}

TEST(QelStatus, FileMessageShowsTheStatusOnly) {
    const XQELFile file(false);
    file.SetError(0, ENOENT);
    EXPECT_EQ("Status = 0", Text(file.ErrorMessage()));
    file.SetError(17, ENOENT);
    EXPECT_EQ("Status = 17", Text(file.ErrorMessage()));
}

TEST(QelStatus, AdditionalTextOutlivesClear) {
    const XQELFile file(false);
    file.SetErrMessEx("a.txt");
    file.SetError(17, 2);
    file.Clear();
    EXPECT_EQ("a.txt", Text(file.GetErrMessEx()));
    file.SetErrMessEx(nullptr);
    EXPECT_EQ("", Text(file.GetErrMessEx()));
}

TEST(QelStatus, CopiesTakeEveryFieldAndTheRaiseFlag) {
    XQELFile raising(true);
    EXPECT_THROW(raising.SetError(0, ENOENT), XQELFile);
    raising.SetErrMessEx("a.txt");

    const XQELFile copy(raising);
    EXPECT_EQ(ENOENT, copy.Errno());
    EXPECT_EQ("a.txt", Text(copy.GetErrMessEx()));
    EXPECT_THROW(copy.SetError(1, 0), XQELFile);

    XQELFile assigned(false);
    assigned = raising;
    EXPECT_EQ(ENOENT, assigned.Errno());
    EXPECT_EQ("a.txt", Text(assigned.GetErrMessEx()));
    EXPECT_THROW(assigned.SetError(1, 0), XQELFile);
    assigned = XQELFile(false);
    EXPECT_NO_THROW(assigned.SetError(1, 0));
    EXPECT_EQ(0, raising.Status());
}

// A file object is its own status and is thrown as one, without its handle.
TEST(QelStatus, ClassesOfCallersAreThrownAsTheStatusClassBelowThem) {
    class OwnFile : public XQELFile {
    public:
        int handle = 7;
    };
    EXPECT_EQ(NameOf<XQELFile>(), ThrownBy([] { OwnFile().SetError(17, 0); }));
}

#ifdef __GNUC__
// Callers that were compiled apart call through the table: two destructors, IsError, ErrorMessage,
// Clear, Raise.
TEST(QelStatus, VirtualFunctionsKeepTheirOrder) {
    const XQELStatus status(4, false);
    void* const* const table = *reinterpret_cast<void* const* const*>(&status);
    const auto is_error = reinterpret_cast<bool (*)(const XQELStatus*)>(table[2]);
    const auto clear = reinterpret_cast<void (*)(const XQELStatus*)>(table[4]);
    const auto raise = reinterpret_cast<void (*)(const XQELStatus*)>(table[5]);
    EXPECT_TRUE(is_error(&status));
    EXPECT_EQ(NameOf<XQELStatus>(), ThrownBy([&] { raise(&status); }));
    clear(&status);
    EXPECT_FALSE(is_error(&status));
}
#endif

}  // namespace
