// Printers: page documents of text lines, and raw bytes for drawer codes.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tpv {

class PrintError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One document on one printer, scaled in centimetres. Nothing is guaranteed to
// be on paper before End; a document destroyed without End is dropped. Every
// operation throws PrintError when the printer fails.
class PrintDocument {
 public:
  virtual ~PrintDocument() = default;

  virtual void SetFont(std::string_view family, double points, bool bold) = 0;
  // Prints the text at the current position and moves to the next line; a line
  // break inside the text moves one line further.
  virtual void PrintLine(std::string_view text) = 0;
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
  // Device name of the printer that documents go to; "" when there is none.
  virtual std::string Current() const = 0;
  // Throws PrintError when no such printer is installed.
  virtual void SetCurrent(std::string_view name) = 0;
  // A new document on the current printer.
  virtual std::unique_ptr<PrintDocument> Begin() = 0;
  // Sends bytes as they are to the current printer, as one document.
  virtual void SendRaw(std::string_view bytes) = 0;
};

// Devices opened by name ("LPT1" or what the parameters say) for raw output.
class OutputDevices {
 public:
  virtual ~OutputDevices() = default;
  // Opens, writes all bytes and closes. Throws PrintError when any of it fails.
  virtual void Write(std::string_view device, std::string_view bytes) = 0;
};

}  // namespace tpv
