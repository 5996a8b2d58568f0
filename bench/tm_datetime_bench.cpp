// The dates on the C runtime's broken-down time beside the bare calls that they are made of.

#include <sys/timeb.h>

#include <ctime>
#include <string>

#include "datetime/tm_datetime.h"
#include "support/wine_bench.h"

namespace {

// A moment that differs from call to call: a year in steps of 13 hours and some seconds.
class Moments {
public:
    std::int64_t Next() { return 1704067200 + (step_ = (step_ + 1) % 670) * 47111; }

private:
    std::int64_t step_ = 0;
};

// A value that is made from seconds takes the millisecond of the clock.
void AskClock() {
    struct __timeb64 now;
    ::_ftime64(&now);
    KeepValue(now.millitm);
}

void FromSeconds(WineBench& bench) {
    Moments moments;
    bench.Run("date/milliseconds to UTC fields/qelkit", [&] {
        KeepValue(QEL::CDateTime(static_cast<std::uint64_t>(moments.Next()) * 1000, false));
    });
    bench.Run("date/milliseconds to UTC fields/C runtime", [&] {
        const std::int64_t seconds = moments.Next() * 1000 / 1000;
        KeepValue(*::_gmtime64(&seconds));
    });
    bench.Run("date/seconds to UTC fields/qelkit",
              [&] { KeepValue(QEL::CDateTime(moments.Next(), false)); });
    bench.Run("date/seconds to UTC fields/C runtime", [&] {
        const std::int64_t seconds = moments.Next();
        AskClock();
        KeepValue(*::_gmtime64(&seconds));
    });
}

void ToLocalTime(WineBench& bench) {
    Moments moments;
    QEL::CDateTime utc(moments.Next(), false), local(true);
    bench.Run("date/UTC fields to local fields/qelkit", [&] {
        utc.GetLocalTime(local);
        KeepValue(local);
    });
    const std::int64_t first = moments.Next();
    tm fields = *::_gmtime64(&first);
    bench.Run("date/UTC fields to local fields/C runtime", [&] {
        tm copy = fields;
        const std::int64_t seconds = ::_mkgmtime64(&copy);
        KeepValue(*::_localtime64(&seconds));
    });
}

void ToSeconds(WineBench& bench) {
    for (const bool local : {false, true}) {
        const QEL::CDateTime value(2024, 3, 5, 9, 5, 7, 3, local);
        const std::string name =
            std::string("date/") + (local ? "local" : "UTC") + " fields to seconds/";
        bench.Run(name + "qelkit", [&] { KeepValue(static_cast<long32>(value)); });
        tm fields = {};
        fields.tm_year = 124, fields.tm_mon = 2, fields.tm_mday = 5;
        fields.tm_hour = 9, fields.tm_min = 5, fields.tm_sec = 7;
        bench.Run(name + "C runtime", [&] {
            tm copy = fields;
            KeepValue(local ? ::_mktime64(&copy) : ::_mkgmtime64(&copy));
        });
    }
}

}  // namespace

int main() {
    WineBench bench;
    FromSeconds(bench);
    ToLocalTime(bench);
    ToSeconds(bench);
    return bench.Print();
}
