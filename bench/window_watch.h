// Checks all the time, on a thread of its own, whether a window answers, and keeps the longest time without an answer.
#pragma once

#include <windows.h>

#include <atomic>
#include <thread>

// Seconds since 1970 as the system's clock shows them: the server's log uses the same clock.
double Now();

class WindowWatch {
  public:
    WindowWatch() = default;
    ~WindowWatch() { Stop(); }
    WindowWatch(const WindowWatch&) = delete;
    WindowWatch& operator=(const WindowWatch&) = delete;

    void Start(HWND window);
    // Waits for a check that is still open, because it counts.
    void Stop();
    double Longest() const { return longest_; }     // seconds without an answer
    double LongestBegan() const { return began_; }  // when that check began, as Now()

  private:
    void Ask(HWND window);

    std::thread thread_;
    std::atomic<bool> stop_{false};
    double longest_ = 0;
    double began_ = 0;
};
