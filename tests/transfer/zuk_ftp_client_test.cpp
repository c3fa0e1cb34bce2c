// The client and the pipeline against a real FTP server.
#include "transfer/zuk_ftp_client.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <random>
#include <thread>

#include "support/ftp_server.h"

namespace transfer {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ZukFtpClientTest : public ::testing::Test {
 protected:
  ZukFtpClientTest() { write("statement.gz", 3000000); }

  // Bytes that do not compress and would show a lost or doubled block.
  void write(const std::string& name, std::size_t size) {
    std::mt19937 random(7);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    std::ofstream(folder_.path() / name, std::ios::binary) << bytes;
  }

  fs::path local() const { return folder_.path() / "statement.gz"; }

  bool connect(ZukFtpClient& client, const support::FtpServer& server,
               const std::string& password = "kvnt2281") {
    return client.Connect(server.address(), server.port(), "kornvat", password, "/");
  }

  ZukFtpClient client(FtpLimits limits = {5, 5, 5}, const FtpSecurity& security = {}) {
    return {[this](const std::string& line) { reasons_.push_back(line); }, limits, security};
  }

  support::TemporaryFolder folder_;
  std::vector<std::string> reasons_;
};

TEST_F(ZukFtpClientTest, SendsWholeAndRenames) {
  const support::FtpServer server;
  ZukFtpClient ftp = client();
  ASSERT_TRUE(connect(ftp, server));
  ASSERT_TRUE(ftp.PutFile(local(), "/MU/20130821_153000_-7.g"));
  ASSERT_TRUE(ftp.PutFile(local(), "/MU/김's 식당 #1%.g"));
  ASSERT_TRUE(ftp.RenameFile("/MU/20130821_153000_-7.g", "/MU/20130821_153000_-7.gz"));
  ftp.Disconnect();
  EXPECT_THAT(server.files(), ElementsAre("20130821_153000_-7.gz", "김's 식당 #1%.g"));
  EXPECT_EQ(support::readFile(server.remoteFolder() / "20130821_153000_-7.gz"),
            support::readFile(local()));
  EXPECT_THAT(reasons_, IsEmpty());
}

TEST_F(ZukFtpClientTest, RefusalsAreFalseWithAReasonAndNoPassword) {
  support::FtpServer server;
  ZukFtpClient ftp = client();
  EXPECT_FALSE(ftp.PutFile(local(), "/MU/a.g")) << "no session yet";
  EXPECT_FALSE(connect(ftp, server, "wrong-password"));
  ASSERT_TRUE(connect(ftp, server));
  EXPECT_FALSE(ftp.PutFile(folder_.path() / "missing.gz", "/MU/a.g"));
  EXPECT_FALSE(ftp.RenameFile("/MU/missing.g", "/MU/missing.gz"));
  EXPECT_FALSE(ftp.PutFile(local(), "/missing/a.g"));
  EXPECT_TRUE(ftp.PutFile(local(), "/MU/a.g")) << "the session outlives a refusal";
  server.stop();
  EXPECT_FALSE(ftp.PutFile(local(), "/MU/b.g"));
  EXPECT_EQ(reasons_.size(), 6U);
  for (const std::string& reason : reasons_) {
    EXPECT_THAT(reason, ::testing::StartsWith("E)ZukFtpClient->"));
    EXPECT_THAT(reason, ::testing::Not(::testing::AnyOf(HasSubstr("kornvat"), HasSubstr("password"),
                                                        HasSubstr("kvnt2281"))));
  }
}

TEST_F(ZukFtpClientTest, FullDiskAndForbiddenRenameAreNoticed) {
  const support::FtpServer full({.quotaBytes = 1000000});
  ZukFtpClient ftp = client();
  ASSERT_TRUE(connect(ftp, full));
  EXPECT_FALSE(ftp.PutFile(local(), "/MU/a.g"));

  const support::FtpServer fixed({.arguments = {"-G"}});
  ASSERT_TRUE(connect(ftp, fixed));
  ASSERT_TRUE(ftp.PutFile(local(), "/MU/a.g"));
  EXPECT_FALSE(ftp.RenameFile("/MU/a.g", "/MU/a.gz"));
  EXPECT_THAT(fixed.files(), ElementsAre("a.g"));
}

TEST_F(ZukFtpClientTest, AServerThatKeptLessThanItSaysIsNotBelieved) {
  for (const bool knowsSize : {true, false}) {
    const support::LyingFtpServer server(knowsSize);
    ZukFtpClient ftp = client();
    ASSERT_TRUE(ftp.Connect(server.address(), server.port(), "kornvat", "kvnt2281", "/"));
    EXPECT_EQ(ftp.PutFile(local(), "/MU/a.g"), !knowsSize);
    EXPECT_THAT(server.commands(), HasSubstr("STOR\nSIZE\n"));
    if (knowsSize) {
      EXPECT_EQ(ftp.lastFailure().description, "the server has 20 of 3000000 bytes");
    }
  }
}

TEST_F(ZukFtpClientTest, ConnectionCutInTheMiddleOfAnUpload) {
  support::FtpServer server({.arguments = {"-T", "256"}});  // KiB a second
  ZukFtpClient ftp = client();
  ASSERT_TRUE(connect(ftp, server));
  std::atomic<bool> sent = true;
  std::thread upload([&] { sent = ftp.PutFile(local(), "/MU/a.g"); });
  std::error_code failure;
  while (fs::file_size(server.remoteFolder() / "a.g", failure) == 0 || failure) {
    std::this_thread::yield();
  }
  server.stop();
  upload.join();
  EXPECT_FALSE(sent);
  EXPECT_THAT(server.files(), ElementsAre("a.g"));
}

// A certificate of its own making, with its key, for the name or address.
fs::path makeCertificate(const fs::path& folder, const std::string& name,
                         const std::string& until) {
  fs::path file = folder / (name + until);
  std::ofstream(folder / "index").flush();
  std::ofstream(folder / "config")
      << "[ca]\ndefault_ca=own\n[own]\ndatabase=" << (folder / "index").string()
      << "\nrand_serial=yes\ndefault_md=sha256\npolicy=any\nx509_extensions=server\n"
      << "new_certs_dir=" << folder.string() << "\n[any]\ncommonName=supplied\n"
      << "[server]\nsubjectAltName=" << name << "\n[req]\ndistinguished_name=none\n[none]\n";
  std::string output;
  const std::string command =
      "cd " + folder.string() +
      " && openssl req -config config -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes"
      " -keyout key -subj /CN=test -out request && openssl ca -config config -batch -selfsign"
      " -keyfile key -in request -startdate 20200101000000Z -enddate " +
      until + " -notext -out certificate && cat key certificate > " + file.string();
  EXPECT_EQ(support::run({"sh", "-c", command}, &output), 0) << output;
  return file;
}

TEST_F(ZukFtpClientTest, AskedForTlsItSendsToAServerThatProvesItsNameOnly) {
  const std::string later = "20991231000000Z";
  const std::string here = "IP:" + support::FtpServer::ownAddress();
  const struct {
    const char* name;
    fs::path certificate;  // of the server; none: it knows no TLS
    bool trusted;
    const char* refusal;  // none: it is sent
  } cases[] = {
      {"right", makeCertificate(folder_.path(), here, later), true, nullptr},
      {"unknown", makeCertificate(folder_.path(), here, later), false, "certificate"},
      {"wrong host", makeCertificate(folder_.path(), "IP:127.9.9.9", later), true, "subject name"},
      {"expired", makeCertificate(folder_.path(), here, "20200201000000Z"), true, "expired"},
      {"plain server", {}, true, "SSL"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::string> arguments;
    if (!c.certificate.empty()) arguments = {"-Y", "3", "-2", c.certificate};
    const support::FtpServer server({.arguments = arguments});
    reasons_.clear();
    ZukFtpClient ftp = client({5, 5, 5}, {true, c.trusted ? c.certificate.string() : ""});
    EXPECT_EQ(connect(ftp, server), c.refusal == nullptr);
    EXPECT_EQ(ftp.PutFile(local(), "/MU/a.g"), c.refusal == nullptr);
    if (c.refusal == nullptr) {
      EXPECT_TRUE(ftp.RenameFile("/MU/a.g", "/MU/a.gz"));
      EXPECT_EQ(support::readFile(server.remoteFolder() / "a.gz"), support::readFile(local()));
    } else {
      EXPECT_THAT(server.files(), IsEmpty());
      EXPECT_THAT(reasons_, testing::Each(HasSubstr(c.refusal)));
    }
  }
}

// Accepts connections, as the system does for any listener, and never answers.
TEST_F(ZukFtpClientTest, StalledServerEndsByItself) {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof place;
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&place), size), 0);
  ASSERT_EQ(listen(listener, 16), 0);
  getsockname(listener, reinterpret_cast<sockaddr*>(&place), &size);
  ZukFtpClient ftp = client({1, 1, 1});
  EXPECT_FALSE(ftp.Connect("127.0.0.1", ntohs(place.sin_port), "kornvat", "kvnt2281", "/"));
  EXPECT_FALSE(ftp.PutFile(local(), "/MU/a.g"));
  EXPECT_EQ(reasons_.size(), 2U);
  close(listener);
}

}  // namespace
}  // namespace transfer
