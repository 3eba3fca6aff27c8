// Printers: page documents of text lines, and raw bytes for drawer codes.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tpv {

class PrintError : public std::runtime_error {
 public:
  // `detail`: what another program said in its own words, for the technician.
  explicit PrintError(const std::string& what, std::string detail = {})
      : std::runtime_error(what), detail_(std::move(detail)) {}
  const std::string& detail() const { return detail_; }

 private:
  std::string detail_;
};

// Nobody knows whether the document, or a part of it, came out.
class UnsurePrint : public PrintError {
 public:
  using PrintError::PrintError;
};

class PrintOutbox;

// One document on one printer, scaled in centimetres. A document destroyed without End
// is dropped. Every operation throws PrintError when it is known at once that the
// printer fails; a real one may take the document at End and print it behind the till's
// back, and what goes wrong then is told with FrontEnd::Notify. What was ended and not printed
// is in the outbox.
class PrintDocument {
 public:
  virtual ~PrintDocument() = default;

  virtual void SetFont(std::string_view family, double points, bool bold) = 0;
  // Prints the text at the current position and moves to the next line; a line
  // break inside the text moves one line further.
  virtual void PrintLine(std::string_view text) = 0;
  // A square code with this text (square_code.h) and white around it, centred below the
  // current position, which moves below it.
  virtual void PrintCode(std::string_view text) = 0;
  // The vertical position in centimetres from the top of the document.
  virtual double Y() const = 0;
  virtual void SetY(double centimetres) = 0;
  virtual void End() = 0;
};

class Printers {
 public:
  virtual ~Printers() = default;

  // Device names, the system's default first. May be empty.
  virtual std::vector<std::string> Installed() const = 0;
  // Device name of the printer that documents go to; "" when there is none or nobody
  // can say.
  virtual std::string Current() const = 0;
  // Throws PrintError when no such printer is installed.
  virtual void SetCurrent(std::string_view name) = 0;
  // A new document on the current printer. The operator knows it by its title; nobody
  // is told when one without a title fails later.
  virtual std::unique_ptr<PrintDocument> Begin(std::string_view title) = 0;
  // One that is of no use later: when it is not printed, that is told, and it is in no
  // outbox.
  virtual std::unique_ptr<PrintDocument> BeginTrial(std::string_view title) { return Begin(title); }
  // Sends bytes as they are to the current printer, as one document. Nobody is told
  // when they fail later.
  virtual void SendRaw(std::string_view bytes) = 0;
  // Where documents with a title wait that were not printed; null where none are kept.
  virtual PrintOutbox* Outbox() { return nullptr; }
};

// Devices opened by name ("LPT1" or what the parameters say) for raw output.
class OutputDevices {
 public:
  virtual ~OutputDevices() = default;
  // Opens, writes all bytes and closes. Throws PrintError when it is known at once that
  // any of it fails; nobody is told of a failure that comes later.
  virtual void Write(std::string_view device, std::string_view bytes) = 0;
};

}  // namespace tpv
