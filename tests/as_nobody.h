// A test's own rights taken away.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace tpv {

// Nobody in particular, as root may read and write whatever it likes.
class AsNobody {
 public:
  AsNobody() { EXPECT_EQ(user_ == 0 ? ::seteuid(65534) : 0, 0); }
  ~AsNobody() { EXPECT_EQ(::seteuid(user_), 0); }

 private:
  const uid_t user_ = ::geteuid();
};

}  // namespace tpv
