// event_log FILE add TEXT...   appends an event for every TEXT
// event_log FILE fill COUNT    appends that many events
// event_log FILE show          shows the events, oldest first
//
// The log is a record file of fixed events with a limit, so that it never grows beyond some
// kilobytes: new events go over old ones. An event is safe as soon as the program has said so,
// whatever happens to the program afterwards. A log that was cut short opens with the events that
// are left; a file that is no event log stays as it is.
//
// Ends with 0, or with 1 and a message that says what failed.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <qelkit2.h>

#include <windows.h>

#include "../console/utf8.h"

namespace {

constexpr long kMostEvents = 100;
constexpr unsigned char kCreate = 0;
constexpr unsigned char kUpdate = 1;
constexpr unsigned char kReadOnly = 2;

// The place of an event in the file tells nothing of its age: its number does.
struct Event {
    std::int64_t time;  // local seconds since 1970
    std::int32_t number;
    char text[52];  // in the ANSI code page, zeros behind it
};

CRecFieldInfo event_fields[] = {
    {kFileDataTime, sizeof Event::time},
    {kFileDataInteger, sizeof Event::number},
    {kFileDataText, sizeof Event::text},
};
// With it the library refuses files of other fields, our own of another version among them.
CRecordInfo event_info(3, event_fields);

// Why the program gives up.
struct Failure {
    int status;
    std::string what;
};

class EventLog {
public:
    // Opens the log for adding, and makes it if it is not there.
    explicit EventLog(const std::string& path)
        : claimed_(Probe(path)), file_(path.c_str(), sizeof(Event), ModeFor(path), &event_info) {
        Require(file_.GetRetCode() == 0, "opening");
        if (file_.MaxRecords() == 0) Require(file_.MaxRecords(kMostEvents), "setting the limit");
        if (file_.Size() < claimed_) {
            std::printf("the log was cut: %ld of %ld events are left\n", file_.Size(), claimed_);
        }
        for (const Event& event : ReadAll()) last_number_ = event.number;
    }

    void Add(const char* text) {
        Event event = {};
        event.number = ++last_number_;
        event.time = CQELDateTime(true);
        std::strncpy(event.text, text, sizeof event.text - 1);
        // The header last: it counts the event in.
        Require(file_.Add(&event) && file_.PutHeader(), "adding an event");
    }

    // All events, oldest first.
    std::vector<Event> ReadAll() {
        std::vector<Event> events(static_cast<std::size_t>(file_.Size()));
        for (std::size_t i = 0; i < events.size(); ++i) {
            Require(file_.Get(static_cast<long>(i), &events[i]), "reading an event");
            events[i].text[sizeof events[i].text - 1] = '\0';
        }
        std::sort(events.begin(), events.end(),
                  [](const Event& a, const Event& b) { return a.number < b.number; });
        return events;
    }

private:
    static unsigned char ModeFor(const std::string& path) {
        return CQELFile::IsExists(path.c_str()) ? kUpdate : kCreate;
    }

    // How many events the file says that it has. Opening for update would take a file without a
    // readable header for an empty one; opening for reading changes nothing and tells.
    static long Probe(const std::string& path) {
        if (!CQELFile::IsExists(path.c_str())) return 0;
        const CRecFile file(path.c_str(), sizeof(Event), kReadOnly, &event_info);
        if (file.GetRetCode() != 0) throw Failure{file.GetRetCode(), "this is no event log"};
        return file.Size();
    }

    void Require(bool done, const char* what) const {
        if (!done) throw Failure{file_.GetRetCode(), what};
    }

    long claimed_;
    CRecFile file_;
    std::int32_t last_number_ = 0;
};

void Show(EventLog& log) {
    const std::vector<Event> events = log.ReadAll();
    for (const Event& event : events) {
        const CQELString time = CQELDateTime(event.time).TextDateTime(1, 1, 0);
        std::printf("%6d  %s  %s\n", event.number, Utf8(time).c_str(), Utf8(event.text).c_str());
    }
    std::printf("%zu events\n", events.size());
}

void Fill(EventLog& log, const char* count) {
    const long events = std::strtol(count, nullptr, 10);
    for (long i = 1; i <= events; ++i) log.Add(("event " + std::to_string(i)).c_str());
    std::printf("%ld events added\n", events);
}

int Run(int argc, char** argv) {
    const std::string command = argc > 2 ? argv[2] : "";
    const bool adds = command == "add" && argc > 3;
    const bool fills = command == "fill" && argc == 4;
    if (!adds && !fills && !(command == "show" && argc == 3)) {
        std::printf("usage: event_log FILE add TEXT... | fill COUNT | show\n");
        return 1;
    }
    EventLog log(argv[1]);
    if (adds) {
        for (int i = 3; i < argc; ++i) log.Add(argv[i]);
        std::printf("%d events added\n", argc - 3);
    } else if (fills) {
        Fill(log, argv[3]);
    } else {
        Show(log);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    SetConsoleOutputCP(CP_UTF8);
    try {
        return Run(argc, argv);
    } catch (const Failure& failure) {
        const CQELString text = GetErrorString("", failure.status, argv[1]);
        std::printf("failed: %s\n  status %d: %s\n", failure.what.c_str(), failure.status,
                    Utf8(text).c_str());
    }
    return 1;
}
