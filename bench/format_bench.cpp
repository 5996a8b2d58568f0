// The formatting engines beside what a program would do instead: snprintf, once to measure and once
// into a new std::string. There are two of it: the compiler's ("snprintf") and the C runtime's
// ("_snprintf"), on which our engines stand.

#include <cstdarg>
#include <cstdio>
#include <string>

#include "support/wine_bench.h"
#include "text/qel_string.h"

namespace {

CQELString FormatV(const char* fmt, ...) {
    CQELString string;
    va_list args;
    va_start(args, fmt);
    string.FormatV(fmt, args);
    va_end(args);
    return string;
}

CQELString Sprintf(const char* fmt, ...) {
    CQELString string;
    va_list args;
    va_start(args, fmt);
    string.Sprintf(fmt, args);
    va_end(args);
    return string;
}

template <typename... Arguments>
std::string ByCompiler(const char* fmt, Arguments... arguments) {
    std::string text(static_cast<std::size_t>(std::snprintf(nullptr, 0, fmt, arguments...)), '\0');
    std::snprintf(text.data(), text.size() + 1, fmt, arguments...);
    return text;
}

template <typename... Arguments>
std::string ByRuntime(const char* fmt, Arguments... arguments) {
    std::string text(static_cast<std::size_t>(::_scprintf(fmt, arguments...)), '\0');
    ::_snprintf(text.data(), text.size() + 1, fmt, arguments...);
    return text;
}

template <typename... Arguments>
void RunAll(WineBench& bench, const std::string& name, const char* fmt, Arguments... arguments) {
    const auto run = [&](const char* group, const char* contender, auto operation) {
        bench.Run(std::string(group) + "/" + name + "/" + contender, operation);
    };
    const auto run_peers = [&](const char* group) {
        run(group, "snprintf", [&] { KeepValue(ByCompiler(fmt, arguments...)); });
        run(group, "_snprintf", [&] { KeepValue(ByRuntime(fmt, arguments...)); });
    };
    run("Format", "qelkit", [&] {
        CQELString string;
        KeepValue(string.Format(fmt, arguments...));
    });
    run_peers("Format");
    run("FormatV", "qelkit", [&] { KeepValue(FormatV(fmt, arguments...)); });
    run_peers("FormatV");
    run("Sprintf", "qelkit", [&] { KeepValue(Sprintf(fmt, arguments...)); });
    run_peers("Sprintf");
}

}  // namespace

int main() {
    WineBench bench;
    const std::string path = "C:\\Program Files\\Company\\Product\\settings.ini";
    const std::string line(200, 'x');
    RunAll(bench, "message", "%s returns error %d", "Open", 5);
    RunAll(bench, "path", "%s\\%s (%d of %d)", path.c_str(), "name.txt", 3, 12);
    RunAll(bench, "numbers", "%d %u %08x %5d", -123456, 42u, 0xBEEF, 7);
    RunAll(bench, "fractions", "%.2f %8.3f %g", 3.14159, 1234.5678, 0.001);
    RunAll(bench, "columns", "%-20s|%10s|%-8d", "Product", "settings", 1234);
    RunAll(bench, "lines", "%s\r\n%s\r\n%s\r\n%s", line.c_str(), line.c_str(), line.c_str(),
           line.c_str());
    return bench.Print();
}
