#include "transfer/zuk_ftp_client.h"

#include <curl/curl.h>

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "platform/random_access_file.h"
#include "values/runtime_error.h"

namespace transfer {
namespace {

// libcurl wants its global state set up once and torn down once in a process.
class CurlLibrary {
 public:
  CurlLibrary() { curl_global_init(CURL_GLOBAL_DEFAULT); }
  ~CurlLibrary() { curl_global_cleanup(); }
  CurlLibrary(const CurlLibrary&) = delete;
  CurlLibrary& operator=(const CurlLibrary&) = delete;

  static void use() { static const CurlLibrary library; }
};

struct CloseList {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using List = std::unique_ptr<curl_slist, CloseList>;

struct CloseHandle {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};

struct SentFile {
  RandomAccessFile file;
  std::uint64_t offset = 0;  // of the next byte to send
};

std::optional<SentFile> openToSend(const std::string& path) {
  try {
    return SentFile{RandomAccessFile::open(path, RandomAccessFile::Mode::kReadOnly)};
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

std::size_t readFile(char* buffer, std::size_t size, std::size_t count, void* stream) {
  auto& sent = *static_cast<SentFile*>(stream);
  try {
    const auto room = std::as_writable_bytes(std::span(buffer, size * count));
    const std::size_t got = sent.file.readAt(sent.offset, room);
    sent.offset += got;
    return got;
  } catch (const RuntimeError&) {
    return CURL_READFUNC_ABORT;
  }
}

// Listings that a server may send are of no interest.
std::size_t discard(char*, std::size_t size, std::size_t count, void*) { return size * count; }

}  // namespace

struct ZukFtpClient::Session {
  std::unique_ptr<CURL, CloseHandle> handle{curl_easy_init()};
  std::string root;  // ftp://host:port/
  std::string user;
  std::string password;
  std::array<char, CURL_ERROR_SIZE> error{};

  // "%2F" is the root folder of the server, where a plain "/" would be the folder after login. Only
  // the file's name, which carries the shop's name, can hold what a URL cannot.
  [[nodiscard]] std::string url(const std::string& absolutePath) const {
    const std::size_t name = absolutePath.rfind('/') + 1;
    const std::unique_ptr<char, decltype(&curl_free)> escaped(
        curl_easy_escape(handle.get(), absolutePath.c_str() + name, 0), &curl_free);
    return root + "%2F" + absolutePath.substr(1, name - 1) + escaped.get();
  }

  // A request starts from the handle's defaults but keeps its open connection.
  void begin(const std::string& address, const FtpLimits& limits) {
    CURL* curl = handle.get();
    curl_easy_reset(curl);
    error.front() = '\0';
    curl_easy_setopt(curl, CURLOPT_URL, address.c_str());
    curl_easy_setopt(curl, CURLOPT_USERNAME, user.c_str());
    curl_easy_setopt(curl, CURLOPT_PASSWORD, password.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "ftp");
    curl_easy_setopt(curl, CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
    curl_easy_setopt(curl, CURLOPT_FTP_SKIP_PASV_IP, 1L);
    curl_easy_setopt(curl, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error.data());
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, discard);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, limits.connectSeconds);
    curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, limits.responseSeconds);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, limits.stallSeconds);
  }
};

ZukFtpClient::ZukFtpClient(Report report, FtpLimits limits, FtpSecurity security)
    : report_(std::move(report)), limits_(limits), security_(std::move(security)) {
  CurlLibrary::use();
}

ZukFtpClient::~ZukFtpClient() = default;

bool ZukFtpClient::Connect(const std::string& host, int port, const std::string& user,
                           const std::string& password, const std::string& remoteFolder) {
  session_.reset();
  // One built without it would ignore what it is asked for below.
  if (security_.tls && (curl_version_info(CURLVERSION_NOW)->features & CURL_VERSION_SSL) == 0) {
    return fail("Connect", CURLE_NOT_BUILT_IN, "this program was built without TLS");
  }
  session_ = std::make_unique<Session>();
  session_->root = "ftp://" + host + ":" + std::to_string(port) + "/";
  session_->user = user;
  session_->password = password;
  return run("Connect", {"CWD " + remoteFolder});
}

void ZukFtpClient::Disconnect() { session_.reset(); }

void ZukFtpClient::begin(const std::string& address) {
  session_->begin(address, limits_);
  if (!security_.tls) return;
  CURL* curl = session_->handle.get();
  curl_easy_setopt(curl, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
  curl_easy_setopt(curl, CURLOPT_FTPSSLAUTH, static_cast<long>(CURLFTPAUTH_TLS));
  curl_easy_setopt(curl, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  if (security_.certificates.empty()) return;
  curl_easy_setopt(curl, CURLOPT_CAINFO, security_.certificates.c_str());
  curl_easy_setopt(curl, CURLOPT_CAPATH, nullptr);  // these alone, not the system's besides
}

bool ZukFtpClient::PutFile(const std::string& local, const std::string& remote) {
  if (!session_) return fail("PutFile", error::kObjectNotSet, "no session");
  auto sent = openToSend(local);
  if (!sent) return fail("PutFile", error::kFileNotFound, "cannot read '" + local + "'");
  const auto size = static_cast<curl_off_t>(sent->file.size());
  begin(session_->url(remote));
  CURL* curl = session_->handle.get();
  curl_easy_setopt(curl, CURLOPT_UPLOAD, 1L);
  curl_easy_setopt(curl, CURLOPT_READFUNCTION, readFile);
  curl_easy_setopt(curl, CURLOPT_READDATA, &*sent);
  // With the size told, an upload that ends early is an error and no shorter file.
  curl_easy_setopt(curl, CURLOPT_INFILESIZE_LARGE, size);
  curl_easy_setopt(
      curl, CURLOPT_SERVER_RESPONSE_TIMEOUT,
      limits_.responseSeconds + static_cast<long>(size / limits_.storedBytesPerSecond));
  return finish("PutFile", curl_easy_perform(curl)) && arrivedWhole(remote, size);
}

bool ZukFtpClient::arrivedWhole(const std::string& remote, std::int64_t size) {
  begin(session_->url(remote));
  CURL* curl = session_->handle.get();
  curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);  // SIZE instead of RETR
  const CURLcode code = curl_easy_perform(curl);
  // Some servers answer so where they do not tell sizes; the rename finds out whether it is there.
  if (code == CURLE_REMOTE_FILE_NOT_FOUND) return true;
  if (!finish("PutFile", code)) return false;
  curl_off_t told = -1;
  curl_easy_getinfo(curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &told);
  if (told < 0 || told == size) return true;
  return fail("PutFile", CURLE_PARTIAL_FILE,
              "the server has " + std::to_string(told) + " of " + std::to_string(size) + " bytes");
}

bool ZukFtpClient::RenameFile(const std::string& oldRemote, const std::string& newRemote) {
  if (!session_) return fail("RenameFile", error::kObjectNotSet, "no session");
  return run("RenameFile", {"RNFR " + oldRemote, "RNTO " + newRemote});
}

bool ZukFtpClient::run(const std::string& routine, const std::vector<std::string>& commands) {
  begin(session_->root);
  List list;
  for (const std::string& command : commands) {
    list.reset(curl_slist_append(list.release(), command.c_str()));
  }
  CURL* curl = session_->handle.get();
  curl_easy_setopt(curl, CURLOPT_QUOTE, list.get());
  curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
  return finish(routine, curl_easy_perform(curl));
}

bool ZukFtpClient::finish(const std::string& routine, int curlCode) {
  if (curlCode == CURLE_OK) return true;
  const char* detail = session_->error.data();
  const std::string reason = curl_easy_strerror(static_cast<CURLcode>(curlCode));
  return fail(routine, curlCode, *detail != '\0' ? reason + ": " + detail : reason);
}

bool ZukFtpClient::fail(const std::string& routine, int number, const std::string& description) {
  lastFailure_ = {number, description};
  report_("E)ZukFtpClient->" + routine + "[Erl:=0](Eno:=" + std::to_string(number) + ")" +
          description);
  return false;
}

}  // namespace transfer
