// The shops that this machine remembers, and the one it works on.
#pragma once

#include <string>
#include <vector>

namespace tpv {

class Settings;

struct KnownShop {
  std::string store;  // its file, or "odbc:" and a connection
  std::string name;   // as its tickets have it; "" when it was never opened
};

class Shops {
 public:
  // The settings outlive it. Both may throw what reading and writing them throws.
  explicit Shops(Settings& settings) : settings_(settings) {}

  // The store that the next start opens; "" for none.
  std::string Chosen() const;
  // In the order in which they came, the chosen one always among them.
  std::vector<KnownShop> Known() const;
  // From now on the chosen one; the others stay remembered.
  void Choose(const KnownShop& shop);

 private:
  std::string Read(const std::string& key) const;

  Settings& settings_;
};

// A path as the operator reads it, the home folder as "~".
std::string Shortened(const std::string& path);

}  // namespace tpv
