#include "adapters/mail/curl_mailer.h"

#include <curl/curl.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>

#include "adapters/mail/mail_message.h"
#include "adapters/mail/mail_settings.h"
#include "base/text.h"
#include "platform/clock.h"

namespace tpv {

namespace {

// A dead server holds the till no longer than this.
constexpr long kConnectMilliseconds = 5000;  // greeting and login included
// A server that is awaited is looked at once a second, so the eighth is the last.
constexpr std::chrono::milliseconds kAll{7000};
constexpr std::chrono::seconds kRest{60};

struct FreeCurl {
  void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

bool IsHost(std::string_view server) {
  return std::all_of(server.begin(), server.end(), [](char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c);
    return letter || std::string_view(".-:[]_").find(c) != std::string_view::npos;
  });
}

using Moment = std::chrono::steady_clock::time_point;

class Sending {
 public:
  Sending(const MailSettings& settings, std::vector<std::string> recipients, std::string message,
          int port)
      : settings_(settings),
        recipients_(std::move(recipients)),
        message_(std::move(message)),
        rest_(message_),
        port_(settings.port > 0 ? settings.port : port),
        curl_(curl_easy_init()) {}

  MailResult Run() {
    if (!curl_) return {false, "No se puede preparar el envío"};
    SetServer();
    SetLogin();
    SetEnvelope();
    end_ = std::chrono::steady_clock::now() + kAll;
    code_ = curl_easy_perform(curl_.get());
    if (code_ != CURLE_OK) return {false, (MayHaveArrived() ? Lost() : "") + ErrorText()};
    return {true, unserved_.empty() ? std::string() : "No lo aceptan: " + WithoutPassword(unserved_)};
  }

  std::string Server() const { return settings_.server + ":" + std::to_string(port_); }
  bool NobodyThere() const {
    if (given_) return false;
    return code_ == CURLE_COULDNT_CONNECT || code_ == CURLE_COULDNT_RESOLVE_HOST ||
           code_ == CURLE_OPERATION_TIMEDOUT;
  }

 private:
  // What the server says: its last refusal is why a mail was not sent. A line that ends
  // an answer has a blank behind its number.
  static std::size_t KeepRefusal(char* data, std::size_t size, std::size_t count, void* self) {
    const std::string_view line(data, size * count);
    auto& sending = *static_cast<Sending*>(self);
    const bool refuses = line.size() > 3 && (line[0] == '4' || line[0] == '5');
    if (refuses) sending.refusal_ = line;
    sending.refused_whole_ |= refuses && sending.given_;
    if (line.starts_with("354")) sending.NoteUnserved();
    if (line.size() > 3 && line[3] == ' ') sending.answers_.emplace_back(line);
    return line.size();
  }

  // The last answers before the server wants the text are those to the recipients: one
  // that was refused does not stop the others.
  void NoteUnserved() {
    if (answers_.size() < recipients_.size()) return;
    const std::size_t first = answers_.size() - recipients_.size();
    for (std::size_t i = 0; i < recipients_.size(); ++i) {
      const std::string& answer = answers_[first + i];
      if (answer[0] == '2') continue;
      unserved_ += (unserved_.empty() ? "" : "; ") + recipients_[i] + ": " + TrimRight(OneLine(answer));
    }
  }

  static std::size_t GiveMessage(char* buffer, std::size_t size, std::size_t count, void* self) {
    auto& sending = *static_cast<Sending*>(self);
    const std::size_t length = std::min(size * count, sending.rest_.size());
    sending.rest_.copy(buffer, length);
    sending.rest_.remove_prefix(length);
    sending.given_ = sending.rest_.empty();
    return length;
  }

  // Asked while the server is awaited, its farewell too, which no other limit bounds.
  static int GiveUp(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return std::chrono::steady_clock::now() >= static_cast<Sending*>(self)->end_ ? 1 : 0;
  }

  bool MayHaveArrived() const { return given_ && !refused_whole_; }
  static std::string Lost() {
    return std::string(kMayHaveArrived) + ": el servidor no contestó después de recibirlo. ";
  }

  template <typename Value>
  void Set(CURLoption option, Value value) {
    curl_easy_setopt(curl_.get(), option, value);
  }

  void SetServer() {
    const bool tls = settings_.security == MailSecurity::Tls;
    const std::string url = std::string(tls ? "smtps" : "smtp") + "://" + settings_.server;
    Set(CURLOPT_URL, url.c_str());
    Set(CURLOPT_PORT, static_cast<long>(port_));
    Set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    Set(CURLOPT_PROXY, "");
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_CONNECTTIMEOUT_MS, kConnectMilliseconds);
    Set(CURLOPT_TIMEOUT_MS, static_cast<long>(kAll.count()));
    Set(CURLOPT_FORBID_REUSE, 1L);  // the farewell is part of the sending
    Set(CURLOPT_NOPROGRESS, 0L);
    Set(CURLOPT_XFERINFOFUNCTION, &GiveUp);
    Set(CURLOPT_XFERINFODATA, this);
    Set(CURLOPT_ERRORBUFFER, error_);
    Set(CURLOPT_HEADERFUNCTION, &KeepRefusal);
    Set(CURLOPT_HEADERDATA, this);
  }

  void SetLogin() {
    constexpr long kUse[] = {CURLUSESSL_TRY, CURLUSESSL_ALL, CURLUSESSL_ALL, CURLUSESSL_NONE};
    Set(CURLOPT_USE_SSL, kUse[static_cast<int>(settings_.security)]);
    // Encryption that nobody asked for is better than none, whoever is there.
    const bool verify = settings_.security != MailSecurity::Opportunistic;
    Set(CURLOPT_SSL_VERIFYPEER, verify ? 1L : 0L);
    Set(CURLOPT_SSL_VERIFYHOST, verify ? 2L : 0L);
    if (!settings_.ca_file.empty()) Set(CURLOPT_CAINFO, settings_.ca_file.c_str());
    if (settings_.user.empty()) return;
    Set(CURLOPT_USERNAME, settings_.user.c_str());
    Set(CURLOPT_PASSWORD, settings_.password.c_str());
  }

  void SetEnvelope() {
    Set(CURLOPT_MAIL_FROM, settings_.from.c_str());
    for (const std::string& recipient : recipients_) {
      curl_slist* longer = curl_slist_append(list_.get(), recipient.c_str());
      if (longer == nullptr) throw std::bad_alloc();
      static_cast<void>(list_.release());
      list_.reset(longer);
    }
    Set(CURLOPT_MAIL_RCPT, list_.get());
    Set(CURLOPT_MAIL_RCPT_ALLLOWFAILS, 1L);
    Set(CURLOPT_UPLOAD, 1L);
    Set(CURLOPT_READFUNCTION, &GiveMessage);
    Set(CURLOPT_READDATA, this);
  }

  std::string ErrorText() const {
    std::string text = OneLine(error_[0] != '\0' ? error_ : curl_easy_strerror(code_));
    if (code_ == CURLE_COULDNT_CONNECT) text = "no se puede conectar (" + text + ")";
    const bool late = code_ == CURLE_OPERATION_TIMEDOUT || code_ == CURLE_ABORTED_BY_CALLBACK;
    if (late) text = "no responde (" + text + ")";
    if (code_ == CURLE_LOGIN_DENIED) text = "no acepta el usuario y la contraseña (" + text + ")";
    if (!refusal_.empty()) text += ": " + TrimRight(OneLine(refusal_));
    text = "Servidor de correo " + Server() + ": " + text;
    return WithoutPassword(text);
  }

  // Servers repeat what they did not understand, in the letters that it came in.
  std::string WithoutPassword(std::string text) const {
    if (settings_.password.empty()) return text;
    const std::string login = '\0' + settings_.user + '\0' + settings_.password;
    for (const std::string& secret :
         {Base64(login), Base64(settings_.password), settings_.password}) {
      text = ReplaceAll(text, secret, "***");
    }
    return text;
  }

  const MailSettings& settings_;
  std::vector<std::string> recipients_;
  std::string message_;
  std::string_view rest_;
  int port_;
  std::unique_ptr<CURL, FreeCurl> curl_;
  std::unique_ptr<curl_slist, FreeCurl> list_;
  CURLcode code_ = CURLE_OK;
  Moment end_;
  bool given_ = false;          // the whole message
  bool refused_whole_ = false;  // what came behind it was a refusal
  std::string refusal_;
  std::vector<std::string> answers_;
  std::string unserved_;  // recipients that the server does not take, each with its reason
  char error_[CURL_ERROR_SIZE] = "";
};

// Why a mail cannot even be tried; "" when it can.
std::string Obstacle(const MailSettings& settings, const Mail& mail) {
  if (!settings.Usable()) return "Faltan los datos del servidor de correo";
  if (!IsHost(settings.server))
    return "El servidor de correo «" + OneLine(settings.server) + "» no es válido";
  const bool one_sender = Addresses(settings.from).size() == 1;
  if (!one_sender)
    return "El remitente «" + OneLine(settings.from) + "» no es una dirección de correo";
  if (settings.security == MailSecurity::None && !settings.password.empty()) {
    return "La contraseña del correo no viaja sin cifrar: quite «Mail.Security none», o el usuario y la "
           "contraseña";
  }
  if (!Addresses(mail.to).empty()) return "";
  return "«" + OneLine(mail.to) + "» no es una dirección de correo";
}

void InitializeOnce() {
  static const CURLcode done = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (done != CURLE_OK) throw std::runtime_error("No se puede preparar el envío de correo");
}

}  // namespace

bool CurlMailer::Configured() const { return ReadMailSettings(settings_).Usable(); }

MailResult CurlMailer::Send(const Mail& mail) {
  try {
    InitializeOnce();
    const MailSettings settings = ReadMailSettings(settings_);
    const std::string error = Obstacle(settings, mail);
    if (!error.empty()) return {false, error};
    const std::vector<std::string> recipients = Addresses(mail.to);
    Sending sending(settings, recipients,
                    MailMessage(mail, settings.from, recipients, clock_.Now()), mail.port);
    const auto now = std::chrono::steady_clock::now();
    if (sending.Server() == dead_server_ && now < dead_until_) return {false, dead_error_};
    MailResult result = sending.Run();
    dead_server_ = sending.NobodyThere() ? sending.Server() : std::string();
    dead_error_ = result.text;
    dead_until_ = std::chrono::steady_clock::now() + kRest;
    return result;
  } catch (const std::exception& error) {
    return {false, error.what()};
  }
}

}  // namespace tpv
