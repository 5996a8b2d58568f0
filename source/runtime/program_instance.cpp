#include "runtime/program_instance.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "base/or_empty.h"
#include "platform/handles.h"
#include "runtime/detail/window_table.h"

namespace {

constexpr DWORD kLongestWaitMs = 60000;

std::uint64_t Number(HWND window) {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(window));
}

HWND Window(std::uint64_t number) {
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(number));
}

// Has a mutex. One whose owner died is ours as well: the table is right after every single change.
class MutexGuard {
public:
    MutexGuard(HANDLE mutex, DWORD longest_wait_ms) : mutex_(mutex) {
        const DWORD result = ::WaitForSingleObject(mutex, longest_wait_ms);
        acquired_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    }
    ~MutexGuard() {
        if (acquired_) ::ReleaseMutex(mutex_);
    }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;
    explicit operator bool() const { return acquired_; }

private:
    const HANDLE mutex_;
    bool acquired_;
};

// What the processes of one program share.
class SharedTable {
public:
    explicit SharedTable(const std::string& name) {
        mutex_.Reset(::CreateMutexA(nullptr, FALSE, (name + " Mutex").c_str()));
        is_first_ = ::GetLastError() != ERROR_ALREADY_EXISTS;
    }

    bool is_first() const { return is_first_; }
    HANDLE mutex() const { return mutex_.get(); }

    // With the mutex.
    void Map(const std::string& name) {
        const std::string mapping_name = name + " HWND Map";
        mapping_.Reset(::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            sizeof(kit::WindowTable), mapping_name.c_str()));
        if (!mapping_) return;
        view_.Reset(::MapViewOfFile(mapping_.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0));
    }

    // Runs change(table) with the mutex, unless there is no table or no mutex to be had in time.
    template <typename Change>
    void Update(DWORD longest_wait_ms, Change change) {
        if (!view_) return;
        const MutexGuard guard(mutex(), longest_wait_ms);
        if (guard) change(*static_cast<kit::WindowTable*>(view_.get()));
    }

private:
    kit::KernelHandle mutex_;
    kit::KernelHandle mapping_;
    kit::MappedView view_;
    bool is_first_;
};

// The process's own part. Its lock is held for moments only; the shared mutex is never waited for
// under it, so a slow process elsewhere stops nobody here but the hook that waits.
struct Registry {
    std::mutex lock;
    std::shared_ptr<SharedTable> table;
    std::map<DWORD, HHOOK> hooks;  // by thread

    // Never destroyed: windows may come and go while the process ends.
    static Registry& Instance() {
        static Registry& registry = *new Registry;
        return registry;
    }

    std::shared_ptr<SharedTable> Table() {
        const std::lock_guard<std::mutex> guard(lock);
        return table;
    }
};

bool IsGone(std::uint64_t window) { return !::IsWindow(Window(window)); }

// Whether a user could bring the window to the front. A window that is neither popup nor child gets
// its caption from the system.
bool IsMainWindow(const CREATESTRUCTA& window) {
    if (window.hwndParent || (window.style & WS_CHILD)) return false;
    return !(window.style & WS_POPUP) || (window.style & WS_CAPTION) == WS_CAPTION;
}

void Enter(HWND window) {
    const auto table = Registry::Instance().Table();
    if (!table) return;
    table->Update(kLongestWaitMs, [window](kit::WindowTable& windows) {
        windows.RemoveIf(IsGone);
        windows.Add(Number(window));
    });
}

void Leave(HWND window) {
    const auto table = Registry::Instance().Table();
    if (!table) return;
    table->Update(kLongestWaitMs, [window](kit::WindowTable& windows) {
        windows.RemoveIf([window](std::uint64_t n) { return n == Number(window) || IsGone(n); });
    });
}

// The other hooks come first: what they forbid does not happen.
LRESULT CALLBACK WatchWindows(int code, WPARAM wparam, LPARAM lparam) {
    const LRESULT forbidden = ::CallNextHookEx(nullptr, code, wparam, lparam);
    if (forbidden != 0) return forbidden;
    const auto window = reinterpret_cast<HWND>(wparam);
    if (code == HCBT_DESTROYWND) {
        Leave(window);
    } else if (code == HCBT_CREATEWND) {
        const auto* const creation = reinterpret_cast<const CBT_CREATEWNDA*>(lparam);
        if (IsMainWindow(*creation->lpcs)) Enter(window);
    }
    return 0;
}

bool HookThisThread(Registry& registry) {
    const std::lock_guard<std::mutex> guard(registry.lock);
    const DWORD thread = ::GetCurrentThreadId();
    if (registry.hooks.count(thread) != 0) return true;
    const HHOOK hook = ::SetWindowsHookExA(WH_CBT, &WatchWindows, nullptr, thread);
    if (hook) registry.hooks.emplace(thread, hook);
    return hook != nullptr;
}

// Takes the windows of a thread, which nobody watches any more, out of the table.
void ForgetWindowsOf(SharedTable& table, DWORD thread) {
    table.Update(kLongestWaitMs, [thread](kit::WindowTable& windows) {
        windows.RemoveIf([thread](std::uint64_t window) {
            const DWORD owner = ::GetWindowThreadProcessId(Window(window), nullptr);
            return owner == thread || owner == 0;
        });
    });
}

}  // namespace

bool QEL::CreateProgramInstance(const char* name) {
    const std::string program = kit::OrEmpty(name);
    const auto table = std::make_shared<SharedTable>(program);
    Registry& registry = Registry::Instance();
    const MutexGuard guard(table->mutex(), kLongestWaitMs);
    if (guard) table->Map(program);
    {
        const std::lock_guard<std::mutex> lock(registry.lock);
        registry.table = table;
    }
    if (guard) {
        table->Update(0, [](kit::WindowTable& windows) { windows.RemoveIf(IsGone); });
        if (table->is_first()) HookThisThread(registry);
    }
    return table->is_first();
}

void QEL::GetProgramInstanceWindows(std::vector<HWND>& out) {
    const auto table = Registry::Instance().Table();
    if (!table) return;
    table->Update(INFINITE, [&out](const kit::WindowTable& windows) {
        for (std::uint64_t i = 0; i < windows.Count(); ++i) out.push_back(Window(windows.At(i)));
    });
}

bool QEL::CProgramInstance::AddThread() {
    Registry& registry = Registry::Instance();
    const auto table = registry.Table();
    return table && table->is_first() && HookThisThread(registry);
}

void QEL::CProgramInstance::RemoveThread() {
    Registry& registry = Registry::Instance();
    const DWORD thread = ::GetCurrentThreadId();
    {
        const std::lock_guard<std::mutex> guard(registry.lock);
        const auto found = registry.hooks.find(thread);
        if (found == registry.hooks.end()) return;
        ::UnhookWindowsHookEx(found->second);
        registry.hooks.erase(found);
    }
    if (const auto table = registry.Table()) ForgetWindowsOf(*table, thread);
}

void QEL::CProgramInstance::DestroyInstance() {
    Registry& registry = Registry::Instance();
    std::map<DWORD, HHOOK> hooks;
    std::shared_ptr<SharedTable> table;
    {
        const std::lock_guard<std::mutex> guard(registry.lock);
        hooks.swap(registry.hooks);
        table.swap(registry.table);
    }
    for (const auto& [thread, hook] : hooks) {
        ::UnhookWindowsHookEx(hook);
        if (table) ForgetWindowsOf(*table, thread);
    }
}
