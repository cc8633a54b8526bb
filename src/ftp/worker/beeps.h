// The beeps of connections and transfers, when the user wants them. Listings are quiet.
#pragma once

void BeepOnFailure();
void BeepAtEnd();

// No beeps from this thread for the lifetime of the object.
class QuietBeeps {
  public:
    QuietBeeps();
    ~QuietBeeps();
    QuietBeeps(const QuietBeeps&) = delete;
    QuietBeeps& operator=(const QuietBeeps&) = delete;

  private:
    bool before_;
};
