// The queues of the printing system (CUPS), asked and fed through its own programs: a
// program that hangs can be ended, a library cannot.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/files/deadline.h"
#include "adapters/files/queue_paper.h"

namespace tpv {

struct SystemQueues {
  std::vector<std::string> names;
  std::string usual;  // the system's default, ""
};

// None where the machine has no printing system. One that does not answer, or not in
// time, is a PrintError: nobody knows then which printers there are.
SystemQueues AskForQueues(const Deadline& deadline);

struct SystemQueue {
  std::string name;
  bool raw = false;     // passes bytes on as they are: no driver draws pages for it
  std::string trouble;  // why a document would have to wait in it ("está parada"), or ""
};

// Asks again until the deadline while the printing system is not there. Throws
// PrintError when it stays so, when there is no such queue and when it takes nothing.
SystemQueue AwaitQueue(const std::string& name, const Deadline& deadline);

// What paper the queue's driver has. Throws PrintError when nobody answers.
QueuePaper PaperOf(const SystemQueue& queue, const Deadline& deadline);

// A document for the queue's driver ("-o" options as lp takes them), or bytes as they
// are when one of the options is "raw". Throws PrintError, UnsurePrint when nobody answers.
void SendToQueue(const std::string& queue, std::string_view title,
                 const std::vector<std::string>& options, std::string_view document,
                 const Deadline& deadline);

}  // namespace tpv
