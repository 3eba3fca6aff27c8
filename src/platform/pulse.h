// What long work calls on its way, however deep inside: a statement that runs, rows
// that are read, pages that are drawn. Whoever shows the work to the operator listens.
#pragma once

namespace tpv {

// The operator gave the work up. No std::exception, so that nobody on the way takes
// it for an error to report.
struct GivenUp {};

// Hears the pulses of its thread while it lives; the listener before it again afterwards.
class PulseListener {
 public:
  PulseListener();
  virtual ~PulseListener();
  PulseListener(const PulseListener&) = delete;
  PulseListener& operator=(const PulseListener&) = delete;

  // `share` of what is being done, 0 to 1; negative when it is not known. May throw
  // GivenUp.
  virtual void OnPulse(double share) = 0;
  // Whether it is time to show the first rows of a list that is still being read; and
  // shows them, once.
  virtual bool WantsFirstRows() { return false; }
  virtual void ShowFirstRows() {}

 private:
  PulseListener* before_;
};

// Whether anybody hears this thread's.
bool IsPulseHeard();

// Costs nothing where nobody listens. Throws what the listener throws.
void Pulse(double share = -1);

// What this thread's listener says and does.
bool AreFirstRowsWanted();
void ShowFirstRows();

}  // namespace tpv
