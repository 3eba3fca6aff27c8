#include "adapters/fiscal/agency_post.h"

#include <curl/curl.h>

#include <memory>
#include <stdexcept>

#include "base/text.h"
#include "fiscal/agency.h"

namespace tpv::fiscal {

namespace {

constexpr long kConnectSeconds = 15;
constexpr long kAllSeconds = 60;
constexpr std::size_t kLongestAnswer = 16 << 20;
constexpr long kOk = 200;
constexpr long kFault = 500;  // how SOAP sends a fault

struct FreeCurl {
  void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

class Posting {
 public:
  Posting(const std::string& url, const std::function<bool()>& stop)
      : curl_(curl_easy_init()), url_(url), stop_(stop) {
    if (!curl_) throw CannotSend("No se puede preparar el envío");
    Set(CURLOPT_URL, url_.c_str());
    Set(CURLOPT_PROTOCOLS_STR, "https");
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    Set(CURLOPT_TIMEOUT, kAllSeconds);
    Set(CURLOPT_ERRORBUFFER, error_);
    Set(CURLOPT_NOPROGRESS, 0L);
    Set(CURLOPT_XFERINFOFUNCTION, &GiveUp);
    Set(CURLOPT_XFERINFODATA, this);
    Set(CURLOPT_WRITEFUNCTION, &Take);
    Set(CURLOPT_WRITEDATA, this);
  }

  void ShowCertificate(const ClientCertificate& certificate, const std::string& ca_file) {
    Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!ca_file.empty()) Set(CURLOPT_CAINFO, ca_file.c_str());
    curl_blob shown = Blob(certificate.certificate);
    curl_blob key = Blob(certificate.key);
    Set(CURLOPT_SSLCERTTYPE, "PEM");
    Set(CURLOPT_SSLKEYTYPE, "PEM");
    Set(CURLOPT_SSLCERT_BLOB, &shown);
    Set(CURLOPT_SSLKEY_BLOB, &key);
  }

  std::string Send(const std::string& message) {
    AddHeader("Content-Type: text/xml; charset=UTF-8");
    AddHeader("SOAPAction: \"\"");
    AddHeader("Expect:");  // at once, without asking whether it may
    Set(CURLOPT_HTTPHEADER, headers_.get());
    Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(message.size()));
    Set(CURLOPT_POSTFIELDS, message.data());
    const CURLcode code = curl_easy_perform(curl_.get());
    if (code == CURLE_SSL_CERTPROBLEM) throw CannotSend("No se puede usar el certificado: " + Detail(code));
    if (code != CURLE_OK) throw NoAnswer(Why(code));
    long status = 0;
    curl_easy_getinfo(curl_.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status == kOk || status == kFault) return answer_;
    const bool barred = status == 401 || status == 403;
    throw NoAnswer("La Agencia contesta HTTP " + std::to_string(status) +
                   (barred ? ": no acepta el certificado" : ""));
  }

 private:
  static curl_blob Blob(const std::string& pem) {
    return {const_cast<char*>(pem.data()), pem.size(), CURL_BLOB_COPY};
  }

  static int GiveUp(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    const auto& stop = static_cast<Posting*>(self)->stop_;
    return stop && stop() ? 1 : 0;
  }

  static std::size_t Take(char* data, std::size_t size, std::size_t count, void* self) {
    std::string& answer = static_cast<Posting*>(self)->answer_;
    if (answer.size() + size * count > kLongestAnswer) return 0;
    answer.append(data, size * count);
    return size * count;
  }

  template <typename Value>
  void Set(CURLoption option, Value value) {
    const CURLcode code = curl_easy_setopt(curl_.get(), option, value);
    if (code != CURLE_OK) throw CannotSend(std::string("No se puede preparar el envío: ") + curl_easy_strerror(code));
  }

  void AddHeader(const char* header) {
    curl_slist* longer = curl_slist_append(headers_.get(), header);
    if (longer == nullptr) throw std::bad_alloc();
    static_cast<void>(headers_.release());
    headers_.reset(longer);
  }

  std::string Detail(CURLcode code) const {
    return OneLine(error_[0] != '\0' ? error_ : curl_easy_strerror(code));
  }

  std::string Why(CURLcode code) const {
    const char* said = code == CURLE_OPERATION_TIMEDOUT            ? "La Agencia no responde"
                       : code == CURLE_ABORTED_BY_CALLBACK         ? "El programa se ha cerrado"
                       : code == CURLE_COULDNT_RESOLVE_HOST ||
                               code == CURLE_COULDNT_CONNECT       ? "No se puede conectar con la Agencia"
                       : code == CURLE_PEER_FAILED_VERIFICATION    ? "Quien contesta no es la Agencia"
                                                                   : "Se ha cortado la conexión con la Agencia";
    return std::string(said) + " (" + Detail(code) + ")";
  }

  std::unique_ptr<CURL, FreeCurl> curl_;
  std::unique_ptr<curl_slist, FreeCurl> headers_;
  std::string url_;
  const std::function<bool()>& stop_;
  std::string answer_;
  char error_[CURL_ERROR_SIZE] = "";
};

void InitializeOnce() {
  static const CURLcode done = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (done != CURLE_OK) throw CannotSend("No se puede preparar el envío");
}

}  // namespace

std::string Post(const std::string& url, const std::string& message, const ClientCertificate& certificate,
                 const std::string& ca_file, const std::function<bool()>& stop) {
  InitializeOnce();
  Posting posting(url, stop);
  posting.ShowCertificate(certificate, ca_file);
  return posting.Send(message);
}

}  // namespace tpv::fiscal
