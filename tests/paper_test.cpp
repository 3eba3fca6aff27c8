// What the till puts on paper, into files and onto devices.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <thread>

#include "adapters/files/document_folder.h"
#include "adapters/files/channel.h"
#include "adapters/files/escpos.h"
#include "adapters/files/program.h"
#include "adapters/files/queue_words.h"
#include "adapters/headless/headless_front_end.h"
#include "component/zrtpve.h"
#include "host/config.h"
#include "host/demo/demonstration.h"
#include "host/machine.h"
#include "host/play.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

#ifdef TPV_WITH_PDF
constexpr bool kWithPdf = true;
#else
constexpr bool kWithPdf = false;
#endif

class Paper : public ::testing::Test {
 protected:
  TestFolder folder;
  TestVariable data{"XDG_DATA_HOME", folder / "data"};
  TestVariable settings_home{"XDG_CONFIG_HOME", folder / "config"};
  TestVariable programs{"PATH", folder / "bin" + ":" + std::getenv("PATH")};
  // The queues of whoever runs the tests are not the tests'.
  Paper() { folder.Program("lpstat", "echo scheduler is running"); }
  HeadlessFrontEnd front_end;
  Silence silence;
  suite::SuiteFactory objects;
  Machine machine;
  Ports ports = machine.PortsFor(front_end, objects, silence);

  // What the operator was told once all work was done, one a line.
  std::string Told() {
    machine.Finish();
    std::string text;
    for (const Notice& notice : front_end.TakeNotices()) text += notice.text + "\n";
    return text;
  }
  void PrintLines(const std::vector<std::string>& lines, const std::string& title = "Ticket 1") {
    const auto document = machine.printers.Begin(title);
    document->SetFont("Courier New", 9, false);
    for (const std::string& line : lines) {
      document->PrintLine(line + "\r\n");
      document->SetY(document->Y() - 0.3);
    }
    document->End();
  }
  template <typename Action>
  static std::string ErrorOf(Action action) {
    try {
      action();
    } catch (const PrintError& error) {
      return error.what();
    }
    return "";
  }
};

using PaperSettings = Paper;

TEST_F(PaperSettings, SurviveOddTextsAndLeaveTheRestOfTheFileAlone) {
  FileSettings& settings = machine.settings;
  EXPECT_EQ(settings.Read("OKRA", "Printer", "Spool"), "");
  settings.Write("OKRA", "Printer", "Spool", "Barra");
  EXPECT_EQ(settings.path(), folder / "config/tpv/tpv.conf");
  EXPECT_EQ(ModeOf(settings.path()), 0600);
  EXPECT_EQ(ModeOf(folder / "config/tpv"), 0700);
  std::ofstream(settings.path(), std::ios::app) << "# nuestra impresora\nRara=C:\\cola\n";

  const std::string odd = " a=b\\41 ]\r\n[OKRA/Printer]\nSpool=Otra ñ ";
  settings.Write("OKRA", "Odd [x]/y", "k=\n#", odd);
  EXPECT_EQ(settings.Read("okra", "ODD [X]/Y", "K=\n#"), odd);
  EXPECT_EQ(settings.Keys("OKRA", "Odd [x]/y"), std::vector<std::string>{"k=\n#"});
  settings.Write("OKRA", "PRINTER", "spool", "Cocina");
  EXPECT_EQ(FileSettings(settings.path()).Read("OKRA", "Printer", "Spool"), "Cocina");
  EXPECT_EQ(settings.Read("OKRA", "Printer", "Rara"), "C:\\cola");
  settings.Write("OKRA", "Printer", "Spool", "");
  EXPECT_EQ(settings.Keys("OKRA", "Printer"), std::vector<std::string>{"Rara"});
  EXPECT_NE(folder.Text("config/tpv/tpv.conf").find("# nuestra impresora\n"), std::string::npos);
}

TEST_F(PaperSettings, TwoTillsWritingAtOnceLoseNothing) {
  const auto write = [&](const std::string& till) {
    FileSettings settings(machine.settings.path());
    for (int i = 0; i < 20; ++i) settings.Write("TPV", till, std::to_string(i), "x");
  };
  std::thread other(write, "Segunda");
  write("Primera");
  other.join();
  EXPECT_EQ(machine.settings.Keys("TPV", "Primera").size(), 20U);
  EXPECT_EQ(machine.settings.Keys("TPV", "Segunda").size(), 20U);
}

TEST_F(PaperSettings, WithAPasswordAreNobodyElsesAndALinkStaysOne) {
  FileSettings& settings = machine.settings;
  settings.Write("TPV", "Mail", "User", "caja");
  ::chmod(settings.path().c_str(), 0644);
  EXPECT_EQ(settings.Protect(), "");
  settings.Write("TPV", "Mail", "Password", "Recon0cible");
  std::filesystem::rename(settings.path(), folder / "central.conf");
  std::filesystem::create_symlink("../../central.conf", settings.path());
  ::chmod((folder / "central.conf").c_str(), 0644);
  EXPECT_EQ(settings.Protect(), "Otros usuarios podían leer «" + settings.path() +
                                    "», que tiene la contraseña. Ya no pueden, pero conviene cambiarla");
  EXPECT_EQ(ModeOf(folder / "central.conf"), 0600);
  EXPECT_EQ(settings.Protect(), "");
  settings.Write("TPV", "Mail", "User", "otra");
  EXPECT_TRUE(std::filesystem::is_symlink(settings.path()));
  EXPECT_NE(folder.Text("central.conf").find("User=otra"), std::string::npos);
}

TEST_F(Paper, IsNotPutWhereAnotherUsersLinkLeads) {
  const std::string paper = folder / "papel";
  std::filesystem::create_directory(folder / "lejos");
  std::filesystem::create_symlink(folder / "lejos", paper);
  const DocumentFolder documents(paper, machine.clock);
  documents.Save("Ticket 1", {{".txt", "Pan"}});
  EXPECT_FALSE(folder.Files(".txt").empty());  // the user's own link is followed
  if (::geteuid() != 0) GTEST_SKIP() << "only root can lay another user's link";
  ASSERT_EQ(::lchown(paper.c_str(), 65534, 65534), 0);
  EXPECT_EQ(ErrorOf([&] { documents.Save("Ticket 2", {{".txt", "Pan"}}); }), "«" + paper + "» es un enlace de otro usuario");
  EXPECT_EQ(folder.Files(".txt").size(), 1U);
}

// A word of a PDF page and the box around it, in points.
struct Word {
  double left, top, right, bottom;
  std::string text;
};

std::vector<Word> WordsOf(const std::string& pdf, double& page_width) {
  std::vector<Word> words;
  std::istringstream lines(RunProgram({"pdftotext", "-bbox", pdf, "-"}).output);
  for (std::string line; std::getline(lines, line);) {
    Word word{};
    char text[200] = "";
    std::sscanf(line.c_str(), " <page width=\"%lf\"", &page_width);
    if (std::sscanf(line.c_str(),
                    " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\">%199[^<]",
                    &word.left, &word.top, &word.right, &word.bottom, text) == 5) {
      word.text = text;
      words.push_back(word);
    }
  }
  const auto place = [](const Word& word) { return std::pair(std::lround(word.top), word.left); };
  std::sort(words.begin(), words.end(),
            [&](const Word& a, const Word& b) { return place(a) < place(b); });
  return words;
}

// Nothing beyond the paper's edge, and no line into the one above it.
void ExpectNothingOverlaps(const std::string& pdf) {
  double width = 0;
  const std::vector<Word> words = WordsOf(pdf, width);
  ASSERT_GT(words.size(), 30U);
  EXPECT_NEAR(width, 80 / 25.4 * 72, 0.1);
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_GE(words[i].left, 4 / 25.4 * 72 - 0.1) << words[i].text;
    EXPECT_LE(words[i].right, 76 / 25.4 * 72 + 0.1) << words[i].text;
    if (i == 0) continue;
    const Word& before = words[i - 1];
    const bool same_line = std::abs(words[i].top - before.top) < 1;
    if (same_line)
      EXPECT_GT(words[i].left, before.right) << words[i].text;
    else
      EXPECT_GE(words[i].top, before.bottom - 0.05) << words[i].text;
  }
}

TEST_F(Paper, ASalesTicketIsTheSameAsTextAndAsPdfAndFitsThePaper) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  TestStore store;
  Transaction transaction(store.connection());
  FillDemonstration(store.connection(), store.clock().now);
  store.connection().Execute(
      "UPDATE Parametros SET Par_Nombre = 'Ultramarinos y Vinos Hermanos Peña e Hijas'");
  store.connection().Execute(
      "UPDATE Lav SET Lav_Uni = 1234, Lav_Dto1 = 10 WHERE Lav_Id = (SELECT MAX(Lav_Id) FROM Lav)");
  transaction.Commit();
  objects.SetPorts(ports);
  Zrtpve component(ports);
  component.context().MyBd =
      std::make_shared<suite::StoreDatabase>(store.connection(), 1, front_end, machine.clock,
                                             machine.settings);
  component.context().IdAlbaran = std::stoi(store.Value("SELECT MAX(Lav_IdCav) FROM Lav"));

  component.Emite_Ticket();
  component.Emite_Ticket();

  EXPECT_EQ(Told(), "");
  const auto texts = folder.Files(".txt");
  const auto pdfs = folder.Files(".pdf");
  ASSERT_EQ(texts.size(), 2U);
  ASSERT_EQ(pdfs.size(), 2U);
  EXPECT_EQ(ModeOf(texts[0]), 0600);
  EXPECT_EQ(ModeOf(pdfs[0]), 0600);
  EXPECT_EQ(ModeOf(folder / "data/tpv/tickets"), 0700);
  const std::string text = *ReadFile(texts[0]);
  EXPECT_TRUE(text.starts_with("Ultramarinos y Vinos Hermanos Peña e Hijas\n")) << text;
  // Header lines close up, sold lines keep their gap, eight lines feed the paper.
  EXPECT_NE(text.find("\nCIF/NIF "), std::string::npos);
  EXPECT_NE(text.find(" GRACIAS POR SU VISITA *\n\n\n\n\n\n\n\n\n\n"), std::string::npos) << text;

  const std::string on_paper = RunProgram({"pdftotext", "-layout", pdfs[0], "-"}).output;
  const auto words = [](const std::string& all) {
    std::istringstream stream(all);
    return std::vector<std::string>(std::istream_iterator<std::string>(stream), {});
  };
  EXPECT_EQ(words(on_paper), words(text + "\f"));
  ExpectNothingOverlaps(pdfs[0]);
}

TEST_F(Paper, NoNameLeadsOutOfTheFolder) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  for (const char* name : {"../../../fuera", "/etc/passwd", "..", "\xFF\n", "Ñandú/Barra"}) {
    machine.settings.Write("TPV", "Printers", name, "folder");
    machine.printers.SetCurrent(name);
    PrintLines({name});
    machine.printers.SendRaw("\x1Bp");
    machine.Finish();
    EXPECT_EQ(
        machine.reports.Show({"Título", {}, {}, {}, {}}, name).find(folder / "data/tpv/informes/2"),
        0U);
  }
  EXPECT_EQ(folder.Files(".txt").size(), 5U);
  EXPECT_EQ(folder.Files(".raw").size(), 5U);
  for (const std::string& file : folder.Files("")) {
    if (!std::filesystem::is_regular_file(file) || file.find("config") != std::string::npos ||
        file.find("/bin/") != std::string::npos)
      continue;
    EXPECT_TRUE(file.starts_with(folder / "data/tpv/")) << file;
    EXPECT_EQ(std::count(file.begin(), file.end(), '/'),
              std::count(folder.path().begin(), folder.path().end(), '/') + 4)
        << file;
  }
  EXPECT_EQ(FileNamePiece("Ñandú/Barra"), "nandu-barra");
}

TEST_F(Paper, AFolderThatCannotBeWrittenIsToldAndTheTicketKeptInTheUsualOne) {
  std::ofstream(folder / "file") << "x";
  machine.settings.Write("TPV", "Printers", "Barra", "folder:" + folder / "file/below");
  PrintLines({"x"});
  const std::string told = Told();
  ASSERT_EQ(folder.Files(".txt").size(), 1U);
  EXPECT_TRUE(told.starts_with("«Ticket 1» no se ha impreso en «Barra». ")) << told;
  EXPECT_NE(told.find("no es una carpeta"), std::string::npos) << told;
  EXPECT_NE(told.find("Está guardado en " + folder.Files(".txt")[0]), std::string::npos) << told;
  machine.settings.Write("TPV", "Paper", "Tickets", folder / "file/below");
  PrintLines({"x"});
  EXPECT_NE(Told().find("Tampoco se ha podido guardar"), std::string::npos);
  EXPECT_EQ(folder.Files(".txt").size(), 1U);
}

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

TEST_F(Paper, AReportNumbersItsPagesRepeatsItsCaptionsAndOpens) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  folder.Program("xdg-open",
                 "echo \"$1\" > $FOLDER/opened.part; mv $FOLDER/opened.part $FOLDER/opened");
  Report report{"Diario de cierres", {"Ultramarinos Peña", "B-1234"}, {"Del 01/11/2026"}, {}, {}};
  ReportTable table{
      "Cierres", {{"Fecha", 2, false}, {"Vendedor", 4, false}, {"Saldo", 1, true}}, {}};
  for (int i = 1; i <= 90; ++i)
    table.rows.push_back({{"fila" + std::to_string(i), "Ana", "1.234,50"}});
  table.rows.push_back({{"", "", "sobra"}, true});
  table.rows.back().cells[1] = std::string(200, 'w') + " fin";  // wider than its column
  report.tables = {table};
  report.charts = {
      {"Efectivo y tarjeta", {"Efectivo", "Tarjeta"}, {"lun", "mar"}, {{120.5, 0}, {-30, 1e6}}},
      {"Vacío", {}, {}, {}}};
  const TestVariable display("DISPLAY", ":7");
  const std::string path = machine.reports.Show(report, "cierres");
  const std::string text = RunProgram({"pdftotext", "-layout", path, "-"}).output;
  for (const char* part : {"Diario de cierres", "B-1234", "Del 01/11/2026", "fila90", "fin",
                           "Tarjeta", "1.000.000", "Página 1 de 3", "Página 3 de 3"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
  EXPECT_NE(text.find("Vendedor", text.find('\f')), std::string::npos);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(folder.Text("opened"), path + "\n");
  // Nobody to show it, or nothing to show it on: the operator learns where it lies.
  folder.Program("xdg-open", "exit 3");
  std::string lies = machine.reports.Show(report, "cierres");
  EXPECT_EQ(Told(), "«Diario de cierres» no se puede mostrar. Está en " + lies + ".\n");
  const TestVariable no_display("DISPLAY", "");
  lies = machine.reports.Show(report, "cierres");
  EXPECT_EQ(Told(), "«Diario de cierres» no se puede mostrar. Está en " + lies + ".\n");
}

TEST_F(PaperSettings, ATechnicianChangesThemAndNeverSeesThePassword) {
  std::string shown;
  const auto config = [&](const std::vector<std::string>& words, const std::string& typed = "") {
    std::istringstream in(typed);
    std::ostringstream out;
    const int status = Config(machine, words, in, out);
    shown = out.str();
    return status;
  };
  config({"set", "printers.Barra 1.2", "escpos:10.0.0.5:9100"});
  config({"set", "Mail.password"}, "se creta=\n");
  config({"set", "mail.PORT", "587"});
  EXPECT_EQ(machine.settings.Read("TPV", "Mail", "Password"), "se creta=");
  config({});
  EXPECT_EQ(shown, "# " + machine.settings.path() +
                       "\nPrinters.Barra 1.2 = escpos:10.0.0.5:9100\n"
                       "Mail.Password = (guardada)\nMail.Port = 587\n");
  config({"get", "Mail.Password"});
  EXPECT_EQ(shown, "(guardada)\n");
  config({"printers"});
  EXPECT_EQ(shown, "* Barra 1.2\n  Carpeta de tickets\n");
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{"set", "Mail.Password", "x"},
                                             {"set", "Mail.Port", "0"},
                                             {"set", "Mail.Security", "ssl"},
                                             {"set", "Printers.", "page"},
                                             {"set", "Printers.x", "escpos:"},
                                             {"set", "Devices.LPT1", "lp0"},
                                             {"set", "CodeTable.Barra", "859"},
                                             {"set", "Paper.Tickets", "tickets"},
                                             {"set", "Mial.Port", "1"}, {"set", "Mail"}, {"get"},
                                             {"other"}}) {
    EXPECT_THROW(config(wrong), UsageError) << wrong.back();
  }
  config({"try-printer", "Carpeta de tickets"});
  EXPECT_EQ(shown, folder / "data/tpv/tickets" + "\n");
  config({"unset", "Mail.Password"});
  EXPECT_EQ(machine.settings.Read("TPV", "Mail", "Password"), "");
  const auto missing = [&] {
    try {
      config({"try-mail", "jefa@tienda.es"});
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
    return std::string("nothing");
  };
  EXPECT_EQ(missing(), "falta el ajuste Mail.Server: tpv config set Mail.Server");
  config({"set", "Mail.Server", "127.0.0.1:1"});
  EXPECT_EQ(missing(), "falta el ajuste Mail.From: tpv config set Mail.From");
  config({"set", "Mail.User", "caja@tienda.es"});
  EXPECT_EQ(missing(), "falta el ajuste Mail.Password: tpv config set Mail.Password");
  config({"set", "Paper.Default", "Carpeta de tickets"});
  EXPECT_EQ(shown, "");
  EXPECT_THROW(config({"set", "Paper.Default", "Bara"}), UsageError);
  EXPECT_EQ(machine.settings.Read("TPV", "Paper", "Default"), "Carpeta de tickets");
  folder.Program("lpstat", "exit 1");  // nobody answers
  config({"set", "Paper.Default", "Bara"});
  EXPECT_NE(shown.find("no se ha comprobado que exista «Bara»"), std::string::npos) << shown;
}

}  // namespace
}  // namespace tpv
