// The port to the till's loudspeaker: an operator who looks at the goods hears
// that the screen wants him.
#pragma once

namespace tpv {

class Sound {
 public:
  virtual ~Sound() = default;
  // Asks for the warning sound and returns at once.
  virtual void Warn() = 0;
};

// Where there is nobody to hear it.
class Silence : public Sound {
 public:
  void Warn() override {}
};

}  // namespace tpv
