// The tax agency as the shop sees it: takes messages of records and answers for each.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "fiscal/record.h"

namespace tpv::fiscal {

enum class Verdict { Accepted, AcceptedWithErrors, Rejected };

// What the agency says of one record.
struct AnswerLine {
  std::string number;         // series and number
  std::string date;           // of issue, dd-mm-yyyy
  bool cancellation = false;  // of the number, else its registration
  Verdict verdict = Verdict::Rejected;
  int code = 0;  // of an error; 0 without
  std::string text;
  // It holds a record of this number already; the verdict is on that one.
  bool duplicate = false;
};

struct Answer {
  std::string receipt;      // the agency's own number for the message ("CSV"); "" when it took none
  int wait_seconds = 60;    // before the next message
  std::vector<AnswerLine> lines;
};

// The agency refused the message as a whole: none of its records was taken.
class MessageRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// No answer that can be read: nobody was there, or the agency may have taken the records.
class NoAnswer : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Nothing was sent: the certificate or its settings are wrong here.
class CannotSend : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Agency {
 public:
  virtual ~Agency() = default;
  // Throws CannotSend when nothing can be sent from here.
  virtual void RequireReady() = 0;
  // Hands over records of one issuer in the order of the chain, 1,000 at most, at least one.
  // `outage`: sending was not possible meanwhile. Returns within a minute. Throws those above.
  virtual Answer Send(std::span<const Record> records, bool outage) = 0;
};

}  // namespace tpv::fiscal
