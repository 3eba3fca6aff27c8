// tpv_older STORE: a store of today becomes one of version 3, to be upgraded again.
#include <exception>
#include <iostream>

#include "tests/torture/older_store.h"

int main(int count, char** words) {
  if (count != 2) return 2;
  try {
    tpv::MakeOlder(words[1]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
