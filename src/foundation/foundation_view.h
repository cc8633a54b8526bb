// What the lowest floor asks of the windows: a line on the console, a message box. One current instance; the windows
// fill it in at start-up, a test fills in a recording one. Called from any thread.
#pragma once

enum class BoxButtons { Ok, OkCancel, YesNo, AbortRetryIgnore };
enum class BoxIcon { None, Information, Question, Exclamation, Stop };
enum class BoxAnswer { None, Ok, Cancel, Yes, No, Abort, Retry, Ignore };

struct FoundationView {
    // Appends a text to the console pane; without a pane nothing happens.
    void (*printToConsole)(const char* text) = [](const char*) {};
    // Shows a message box and returns the answer; without a view the answer is None.
    BoxAnswer (*showMessageBox)(const char* text, const char* caption, BoxButtons buttons, BoxIcon icon) =
        [](const char*, const char*, BoxButtons, BoxIcon) { return BoxAnswer::None; };
};
extern FoundationView gFoundationView;

void PrintToConsole(const char* text);
// With a null caption the long product name is used.
BoxAnswer ShowMessageBox(const char* text, const char* caption, BoxButtons buttons, BoxIcon icon);
