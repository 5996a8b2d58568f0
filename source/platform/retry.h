#pragma once

namespace kit {

// What a failed attempt says about the next one.
enum class Failure {
    kBusy,     // somebody holds it: worth another attempt after the pause
    kRefused,  // worth another attempt, but waiting changes nothing
    kGone,     // there is nothing to wait for: exactly one more attempt, at once
};

constexpr int kBusyAttempts = 20;
constexpr unsigned kBusyPauseMs = 200;

// Calls attempt() until it returns true, at most kBusyAttempts times; judge() is asked after each
// failure, and pause(kBusyPauseMs) runs between two attempts of which the first was busy.
// Returns whether an attempt succeeded.
template <typename Attempt, typename Judge, typename Pause>
bool RetryWhileBusy(Attempt attempt, Judge judge, Pause pause) {
    for (int left = kBusyAttempts; left > 0;) {
        if (attempt()) return true;
        const Failure failure = judge();
        if (failure == Failure::kGone) {
            if (left <= 1) return false;
            left = 1;
            continue;
        }
        --left;
        if (left > 0 && failure == Failure::kBusy) pause(kBusyPauseMs);
    }
    return false;
}

}  // namespace kit
