// Bytes to receipt printers and devices, letters in their tables, and programs that hang.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "adapters/files/channel.h"
#include "adapters/files/escpos.h"
#include "adapters/files/program.h"
#include "adapters/files/queue_words.h"
#include "tests/paper_fixture.h"

namespace tpv {
namespace {

TEST_F(Paper, AReceiptPrinterGetsTheSameLinesInItsOwnLanguage) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  std::ofstream(folder / "lp0").flush();
  machine.settings.Write("TPV", "Printers", "Barra", "escpos:" + folder / "lp0");
  ASSERT_EQ(machine.printers.Current(), "Barra");
  {
    const auto document = machine.printers.Begin("Ticket 1");
    document->SetFont("Courier New", 10, true);
    document->PrintLine("Peña 5,00 €\r\n");
    document->SetFont("Courier New", 9, false);
    document->SetY(document->Y() - 0.3);
    document->PrintLine("A\x1B@ “Ő”→\r\n");  // no order to the printer
    document->PrintLine("  Nº 1\r\n");
    document->PrintLine("\r\n");
    machine.Finish();
    EXPECT_EQ(folder.Text("lp0"), "");
    document->End();
  }
  EXPECT_EQ(Told(), "");
  const std::string expected(
      "\x1B@\x1Bt\x13"
      "\x1B"
      "E\x01"
      "Pe\xA4"
      "a 5,00 \xD5\n"
      "\x1B"
      "E\0"
      "A @ \"O\"?\n\n"
      "  N\xA7 1\n\n\n\n"
      "\x1DVB\0",
      47);
  EXPECT_EQ(folder.Text("lp0"), expected);
  machine.printers.SendRaw(std::string("\x1Bp\0\x19\xFA", 5));
  machine.Finish();
  EXPECT_EQ(folder.Text("lp0"), expected + std::string("\x1Bp\0\x19\xFA", 5));
  EXPECT_NE(ErrorOf([&] { machine.reports.Print({}, "Barra"); }).find("impresora de hojas A4"),
            std::string::npos);
}

TEST_F(Paper, LettersGoOutInTheTableThatThePrinterHas) {
  const auto in = [](const char* setting, std::string_view text) {
    return InTable(text, *ParseCodeTable(setting));
  };
  EXPECT_EQ(in("858", "ÇÿñÜ£ßýÝ³«»áí"), "\x80\x98\xA4\x9A\x9C\xE1\xEC\xED\xFC\xAE\xAF\xA0\xA1");
  EXPECT_EQ(in("437", "Ñ £ ª ¿ ± Á Ú ã"), "\xA5 \x9C \xA6 \xA8 \xF1 A U a");
  EXPECT_EQ(in("1252", "Ñandú € “x” ÿ"), "\xD1" "and\xFA \x80 \x93x\x94 \xFF");
  EXPECT_EQ(in("850", "Łódź Ő ő Žižek Şule Ț"), "L\xA2" "dz O o Zizek Sule T");
  // Accents apart from their letters, blanks of every width, marks without one.
  EXPECT_EQ(in("858", "n\u0303u\u0301\u2009a\u00A0b\u3000c\u200Bd\uFEFF"), "\xA4\xA3 a b cd");
  // The euro of an older model: never a column moved.
  EXPECT_EQ(in("850", "Vale 10 €              10,00"), "Vale 10 EUR            10,00");
  EXPECT_EQ(in("850", "Total               1.234,50 €"), "Total               1.234,50 EUR");
  EXPECT_EQ(in("850", "Total..............   1.234,50 €"), "Total.............. 1.234,50 EUR");
  EXPECT_EQ(in("850", "€ por unidad"), "E por unidad");

  std::ofstream(folder / "lp0").flush();
  machine.settings.Write("TPV", "Printers", "Barra", "escpos:" + folder / "lp0");
  for (const auto& [setting, start] : std::map<std::string, std::string>{
           {"858:13", "\x1B@\x1Bt\x0D"}, {"TM-U200", "\x1B@\x1Bt\x02"}, {"437:0", std::string("\x1B@\x1Bt\0", 5)}}) {
    std::ofstream(folder / "lp0", std::ios::trunc).flush();
    machine.settings.Write("TPV", "CodeTable", "Barra", setting);
    PrintLines({"x"});
    EXPECT_EQ(Told(), "");
    EXPECT_TRUE(folder.Text("lp0").starts_with(start + "x\n")) << setting;
  }
  for (const char* wrong : {"", "859", "858:", "858:256", "858:-1", ":19", "tm-t20:x"}) {
    EXPECT_FALSE(ParseCodeTable(wrong)) << wrong;
  }
}

// A printer on the loopback network, until its first document has come.
class NetworkPrinter {
 public:
  ~NetworkPrinter() { Wait(); }
  void Wait() {
    if (thread_.joinable()) thread_.join();
  }
  std::string Target() const { return "127.0.0.1:" + std::to_string(server_.port); }

  std::string got;

 private:
  void Read() {
    const int connection = server_.Accept();
    [[maybe_unused]] const auto status = ::write(connection, "\x12", 1);  // nobody reads it
    char piece[4096];
    for (ssize_t count; (count = ::read(connection, piece, sizeof piece)) > 0;) {
      got.append(piece, static_cast<std::size_t>(count));
    }
    ::close(connection);
  }

  SilentServer server_;
  std::thread thread_{[this] { Read(); }};
};

TEST_F(Paper, BytesReachNetworkPrintersAndDevicesOrAnErrorSaysWhyInTime) {
  std::string bytes(2'000'000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  std::string dead;
  {
    NetworkPrinter printer;
    dead = printer.Target();
    SendBytes("socket://" + printer.Target(), bytes, Deadline(kPaperPatience));
    printer.Wait();
    EXPECT_TRUE(printer.got == bytes);
  }
  EXPECT_NE(ErrorOf([&] { SendBytes(dead, "x", Deadline(kPaperPatience)); }).find("rechaza la conexión"), std::string::npos);
  const SilentServer stuck;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(ErrorOf([&] {
              SendBytes("127.0.0.1:" + std::to_string(stuck.port), std::string(20'000'000, 'x'),
                        Deadline(kPaperPatience));
            }).find("no responde"),
            std::string::npos);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(6));

  std::ofstream(folder / "port").flush();
  machine.settings.Write("TPV", "Devices", "LPT1", folder / "port");
  machine.devices.Write("lpt1:", "kick");
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(folder.Text("port"), "kick");
  for (const std::string& name :
       {folder / "missing", folder.path(), std::string("Barra"), std::string()}) {
    EXPECT_NE(ErrorOf([&] { SendBytes(name, "x", Deadline(kPaperPatience)); }), "") << name;
  }
  // What the store's parameters name is a port, never a file or an address; and a drawer
  // that does not open reports nothing.
  machine.devices.Write(folder / "port", "x");
  machine.devices.Write(folder / "missing", "x");
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(folder.Text("port"), "kick");
  const SilentServer nowhere;
  for (const std::string& name : {"127.0.0.1:" + std::to_string(nowhere.port), std::string("queue:Barra")}) {
    EXPECT_NE(ErrorOf([&] { machine.devices.Write(name, "x"); }).find("ni está en sus ajustes"),
              std::string::npos) << name;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "missing"));

  // A serial port gets the bytes as they are, line feeds too.
  const int printer = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(::grantpt(printer) | ::unlockpt(printer), 0);
  const int held = ::open(::ptsname(printer), O_RDWR | O_NOCTTY);
  machine.devices.Write(::ptsname(printer), "a\nb\r\t\x04");
  machine.Finish();
  char got[20] = "";
  EXPECT_EQ(::read(printer, got, sizeof got), 6);
  EXPECT_STREQ(got, "a\nb\r\t\x04");
  ::close(held);
  ::close(printer);
}

TEST_F(Paper, QueuesAreListedChosenAndTheirRefusalsTranslated) {
  folder.Program("lpstat", "printf 'scheduler is running\\nsystem default destination: Oficina\\nBarra\\nOficina\\n'");
  folder.Program("lpoptions", "[ $# = 3 ] || echo \"printer-info='La del fondo' printer-state=3 printer-type=4\"");
  folder.Program("lp", "echo 'lp: Rara cosa' >&2; exit 1");
  using Names = std::vector<std::string>;
  EXPECT_EQ(machine.printers.Installed(), (Names{"Oficina", "Barra", "Carpeta de tickets"}));
  EXPECT_EQ(machine.printers.Current(), "Oficina");
  machine.settings.Write("TPV", "Printers", "Vieja", "page:Rota");
  machine.settings.Write("TPV", "Printers", "Barra", "lasser");
  machine.settings.Write("TPV", "Paper", "Default", "vieja");
  EXPECT_EQ(machine.printers.Installed(), (Names{"Vieja", "Barra", "Oficina", "Carpeta de tickets"}));
  EXPECT_THROW(machine.printers.SetCurrent("Nadie"), PrintError);
  EXPECT_EQ(machine.printers.Current(), "Vieja");
  machine.printers.SetCurrent("Barra");
  EXPECT_NE(ErrorOf([&] { PrintLines({"x"}); }).find("«lasser»"), std::string::npos);
  // Back to what is the default: it follows the settings again.
  machine.printers.SetCurrent("Vieja");
  machine.settings.Write("TPV", "Paper", "Default", "Carpeta de tickets");
  EXPECT_EQ(machine.printers.Current(), "Carpeta de tickets");
  machine.settings.Write("TPV", "Paper", "Default", "Vieja");
  PrintLines({"x"});
  machine.Finish();
  const auto told = front_end.TakeNotices();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(told[0].text.starts_with("«Ticket 1» no se ha impreso en «Vieja». La cola «Rota» no acepta el documento."))
      << told[0].text;
  EXPECT_EQ(told[0].text.find("Rara cosa"), std::string::npos);
  EXPECT_EQ(told[0].detail, "lp: Rara cosa");

  EXPECT_EQ(TroubleIn("5", "media-empty-error,paused"), "no tiene papel");
  EXPECT_EQ(TroubleIn("5", "none"), "está parada");
  EXPECT_EQ(TroubleIn("3", "connecting-to-device"), "");
  EXPECT_EQ(RefusalIn("Barra", "lp: Error - The printer or class does not exist."), "La cola «Barra» ya no existe");
}

TEST_F(Paper, APrinterThatHangsHoldsNeitherTheTillNorTheOthers) {
  // A serial port whose printer takes nothing.
  const int silent = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(::grantpt(silent) | ::unlockpt(silent), 0);
  const int held = ::open(::ptsname(silent), O_RDWR | O_NOCTTY | O_NONBLOCK);
  for (int full = 0; full < 10; ::usleep(5'000)) {  // the port's own buffers take some first
    full = ::write(held, std::string(4096, 'x').data(), 4096) > 0 ? 0 : full + 1;
  }
  std::ofstream(folder / "lp0").flush();
  machine.settings.Write("TPV", "Printers", "Muda", std::string("escpos:") + ::ptsname(silent));
  machine.settings.Write("TPV", "Printers", "Barra", "escpos:" + folder / "lp0");
  const auto start = std::chrono::steady_clock::now();
  const auto passed = [&] { return std::chrono::steady_clock::now() - start; };
  for (const char* title : {"Ticket 1", "Ticket 2", "Ticket 3"}) PrintLines({"x"}, title);
  machine.printers.SendRaw("drawer");
  machine.printers.SetCurrent("Barra");
  PrintLines({"sigue"}, "Ticket 4");
  EXPECT_LT(passed(), std::chrono::seconds(2));
  while (folder.Text("lp0").find("sigue") == std::string::npos && passed() < std::chrono::seconds(3)) {
    ::usleep(20'000);
  }
  EXPECT_LT(passed(), std::chrono::seconds(3));
  // The end waits its time once, and says of each ticket where it lies.
  const std::string told = Told();
  EXPECT_LT(passed(), std::chrono::seconds(9));
  std::size_t at = 0;
  for (const char* title : {"«Ticket 1»", "«Ticket 2»", "«Ticket 3»"}) {
    at = told.find(title + std::string(" no se ha impreso en «Muda». "), at);
    ASSERT_NE(at, std::string::npos) << title << told;
  }
  EXPECT_NE(told.find("no responde"), std::string::npos) << told;
  EXPECT_NE(told.find("se ha cerrado antes"), std::string::npos) << told;
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 3);
  EXPECT_EQ(folder.Files(".txt").size(), 3U);
  ::close(held);
  ::close(silent);
}

TEST_F(Paper, APrintingSystemThatNeverRanIsAwaitedOnce) {
  folder.Program("lpstat", "echo scheduler is not running");
  machine.printers.LookAhead();
  const auto told_after = [&] {
    const auto start = std::chrono::steady_clock::now();
    PrintLines({"x"});
    EXPECT_NE(Told().find("El sistema de impresión no está en marcha. Está guardado en "), std::string::npos);
    return std::chrono::steady_clock::now() - start;
  };
  EXPECT_GT(told_after(), std::chrono::seconds(3));  // it may be starting
  EXPECT_LT(told_after(), std::chrono::seconds(2));
  folder.Program("lpstat", "printf 'scheduler is running\nBarra\n'");
  folder.Program("lpoptions", "echo printer-state=3");
  folder.Program("lp", "cat > $FOLDER/printed");
  PrintLines({"x"});
  EXPECT_EQ(Told(), "");
  EXPECT_NE(folder.Text("printed"), "(none)");
}

TEST_F(Paper, AProgramThatHangsIsEnded) {
  folder.Program("lento", "sleep 60");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(RunProgram({"lento"}, "x", std::chrono::seconds(1)).done);
  // The database's password is in the till's environment, not in its children's.
  const TestVariable secret("TPV_ODBC_PASSWORD", "Recon0cible");
  const std::string inherited = RunProgram({"env"}).output;
  EXPECT_NE(inherited.find("PATH="), std::string::npos);
  EXPECT_EQ(inherited.find("TPV_"), std::string::npos) << inherited;
  EXPECT_TRUE(LaunchProgram({"sh", "-c", "env > " + folder / "abierto.neu; mv " + folder / "abierto.neu " +
                                             folder / "abierto"},
                            std::chrono::seconds(1)));
  for (int i = 0; i < 500 && folder.Text("abierto") == "(none)"; ++i) ::usleep(10'000);
  EXPECT_NE(folder.Text("abierto").find("PATH="), std::string::npos);
  EXPECT_EQ(folder.Text("abierto").find("TPV_"), std::string::npos);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_FALSE(RunProgram({"no-existe-tal-programa"}).found);
}

}  // namespace
}  // namespace tpv
