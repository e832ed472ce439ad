// What keeps others out, with real servers: certificates of both ends, users who are permitted what
// their part needs and nothing else, and the server's limit on messages. Whoever is refused is told
// why in words, and gets and changes nothing.
#include <gtest/gtest.h>

#include "ospf_tables/instance_rows.hpp"
#include "replicate_test.hpp"

namespace replication_tests {

namespace {

using tool_tests::ToolProcess;
using Words = std::vector<std::string>;

class Secured : public tool_tests::ProcessTest {
 protected:
  void SetUp() override { expect_done({"load", "frr", sample_, "--store", file("from")}); }

  void must_run(const Words &words) {
    const Said said = tool_tests::run_program(folder_, words);
    ASSERT_EQ(said.status, 0) << words[2] << said.err << said.out;
  }
  void serve(const std::string &config) {
    put("server.conf", config);
    server_.reset();
    server_ = std::make_unique<Server>(folder_ / "engine", Words{"-c", file("server.conf")});
  }
  std::string url() const { return url_of(server_->port()); }
  Words words(const std::string &direction, const std::string &store, const Words &more) const {
    Words all = {"replicate", direction, url(), "--name", "site", "--store", file(store)};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
  // Says so and goes on trying.
  void expect_kept_out(const Words &of_process, const std::string &reason) {
    ToolProcess process(folder_, "out" + std::to_string(++runs_), of_process);
    EXPECT_TRUE(says(process, reason)) << process.err();
    EXPECT_EQ(process.err().find("holds"), std::string::npos) << process.err();
  }
  // Both directions do what they are for.
  void expect_let_in(const Words &of_sender, const Words &of_follower) {
    ToolProcess sender(folder_, "sender" + std::to_string(++runs_), of_sender);
    ASSERT_TRUE(says(sender, "the bucket holds the store")) << sender.err();
    ToolProcess follower(folder_, "follower" + std::to_string(runs_), of_follower);
    EXPECT_TRUE(says(follower, "the store holds what the sender sent")) << follower.err();
  }

  std::unique_ptr<Server> server_;
};

class SecuredByTls : public Secured {
 protected:
  void SetUp() override {
    Secured::SetUp();
    for (const char *name : {"authority", "other"}) {
      must_run({"/usr/bin/openssl", "req", "-x509", "-newkey", "ed25519", "-nodes", "-days", "2",
                "-subj", std::string("/CN=") + name, "-keyout", file(name + std::string(".key")),
                "-out", file(name + std::string(".pem"))});
    }
    make("server", "authority", "IP:127.0.0.1", "2");
    make("client", "authority", "DNS:client", "2");
  }
  void make(const std::string &name, const std::string &authority, const std::string &whose,
            const std::string &days) {
    must_run({"/usr/bin/openssl", "req", "-newkey", "ed25519", "-nodes", "-subj", "/CN=" + name,
              "-addext", "subjectAltName=" + whose, "-keyout", file(name + ".key"), "-out",
              file(name + ".request")});
    must_run({"/usr/bin/openssl", "x509", "-req", "-in", file(name + ".request"), "-days", days,
              "-CA", file(authority + ".pem"), "-CAkey", file(authority + ".key"),
              "-CAcreateserial", "-copy_extensions", "copy", "-out", file(name + ".pem")});
  }
  void serve_as(const std::string &name) {
    serve("tls { cert_file: \"" + file(name + ".pem") + "\", key_file: \"" + file(name + ".key") +
          "\", ca_file: \"" + file("authority.pem") + "\", verify: true, timeout: 5 }\n");
  }
  Words believing(const std::string &authority) const {
    return {"--tls-authorities", file(authority + ".pem")};
  }
  Words with(const std::string &authority, const std::string &certificate) const {
    Words all = believing(authority);
    all.insert(all.end(), {"--tls-certificate", file(certificate + ".pem"), "--tls-key",
                           file(certificate + ".key")});
    return all;
  }
};

TEST_F(SecuredByTls, BothEndsShowCertificates) {
  serve_as("server");
  expect_let_in(words("--to", "from", with("authority", "client")),
                words("--from", "to", with("authority", "client")));
  // The follower of a site without a store as well.
  ToolProcess watch(folder_, "watch", [&] {
    Words all = {"watch", "--from", url(), "--name", "site"};
    const Words more = with("authority", "client");
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }());
  EXPECT_TRUE(says(watch, "watching ")) << watch.err();
}

TEST_F(SecuredByTls, WhoIsNotBelievedIsKeptOut) {
  make("stranger", "other", "DNS:client", "2");
  make("late", "authority", "DNS:client", "-1");
  serve_as("server");
  const std::string no_certificate = " is away: the server ended the connection before it answered";
  const std::string no_authority = " is away: SSL handshake error: 20:unable to get local issuer";
  for (const char *direction : {"--to", "--from"}) {
    const auto kept_out = [&](const Words &more, const std::string &reason) {
      SCOPED_TRACE(direction + reason);
      expect_kept_out(words(direction, "from", more), reason);
    };
    kept_out(with("other", "client"), no_authority);
    kept_out({}, no_authority);
    kept_out(believing("authority"), no_certificate);
    kept_out(with("authority", "stranger"), no_certificate);
    kept_out(with("authority", "late"), no_certificate);
  }
  expect_refused(words("--to", "from", believing("nothing")), {"nothing.pem"});
  expect_refused(words("--to", "from",
                       {"--tls-certificate", file("client.pem"), "--tls-key", file("server.key")}),
                 {"client.pem", "key values mismatch"});
  expect_wrong_words(words("--to", "from", {"--tls-key", file("client.key")}),
                     {"--tls-certificate and --tls-key: found one of them, expected both"});
}

TEST_F(SecuredByTls, AServerThatIsNotBelievedIsNotSentTo) {
  make("elsewhere", "authority", "DNS:elsewhere.example", "2");
  serve_as("elsewhere");
  expect_kept_out(words("--to", "from", with("authority", "client")), "IP address mismatch");
  make("expired", "authority", "IP:127.0.0.1", "-1");
  serve_as("expired");
  expect_kept_out(words("--to", "from", with("authority", "client")), "certificate has expired");
  make("stranger", "other", "IP:127.0.0.1", "2");
  serve_as("stranger");
  expect_kept_out(words("--to", "from", with("authority", "client")), "unable to get local issuer");
  // One without TLS is none where authorities are named.
  serve("");
  expect_kept_out(words("--to", "from", with("authority", "client")),
                  "Secure Connection not available");
}

// What docs/replication.md has of each part.
std::string permissions_of(const std::string &part, const std::string &site) {
  const std::string stream = "ospf-harbor_" + site, ask = "ospf-harbor-sender." + site;
  const std::string api = "$JS.API.";
  if (part == "sender") {
    return "ospf-harbor." + site + ".>," + ask + "," + api + "STREAM.INFO." + stream + "," + api +
           "STREAM.CREATE." + stream + "," + api + "STREAM.PURGE." + stream + "," + api +
           "STREAM.MSG.GET." + stream + ",_INBOX.> " + ask + ",_INBOX.>";
  }
  return ask + "," + api + "STREAM.INFO." + stream + "," + api + "STREAM.MSG.GET." + stream + "," +
         api + "CONSUMER.*." + stream + "," + api + "CONSUMER.*." + stream + ".>,$JS.FC.> _INBOX.>";
}

class SecuredByCredentials : public Secured {
 protected:
  void SetUp() override {
    Secured::SetUp();
    const std::string script = places::project() + "/tests/replication/credentials.py";
    must_run({"/usr/bin/python3", script, folder_.string(),
              "sender " + permissions_of("sender", "site"),
              "follower " + permissions_of("follower", "site"),
              "neighbour " + permissions_of("sender", "other-site")});
    serve("include \"accounts.conf\"\n");
  }
  Words as(const std::string &user) const { return {"--credentials", file(user + ".creds")}; }
};

TEST_F(SecuredByCredentials, EachPartDoesWithItsPermissionsWhatItIsFor) {
  expect_let_in(words("--to", "from", as("sender")), words("--from", "to", as("follower")));
  Words status = words("--from", "to", as("follower"));
  status.push_back("--status");
  EXPECT_EQ(run(status).status, 0);
  // What a follower asks for is answered, and a second sender hears of the first.
  ToolProcess sender(folder_, "sender", words("--to", "from", as("sender")));
  ASSERT_TRUE(says(sender, "the bucket holds the store")) << sender.err();
  expect_refused(words("--to", "from", as("sender")), {"has a sender already"});
}

TEST_F(SecuredByCredentials, NobodyDoesMoreThanThat) {
  ToolProcess sender(folder_, "sender", words("--to", "from", as("sender")));
  ASSERT_TRUE(says(sender, "the bucket holds the store")) << sender.err();
  kill(sender.id(), SIGTERM);
  EXPECT_EQ(sender.wait(), 0);
  const std::string not_permitted = "Permissions Violation for Publish to ";
  expect_kept_out(words("--to", "from", as("follower")), not_permitted);
  expect_kept_out(words("--to", "from", as("neighbour")), not_permitted);
  expect_kept_out(words("--from", "to", as("neighbour")), not_permitted);
  expect_kept_out(words("--to", "from", {}), " is away: Authorization Violation");
  Words status = words("--from", "to", as("neighbour"));
  status.push_back("--status");
  expect_refused(status, {not_permitted});
  expect_kept_out(words("--to", "from", as("nobody")),
                  "error opening file '" + file("nobody.creds"));
  // The bucket is as it was left.
  expect_let_in(words("--to", "from", as("sender")), words("--from", "to", as("follower")));
}

// Whoever reads what is said does not learn how to get in.
TEST_F(Secured, PasswordsAreNotTold) {
  serve("authorization { user: paris, password: secret }\n");
  const auto at = [&](const std::string &user) {
    return "nats://" + user + "@" + url().substr(std::string("nats://").size());
  };
  Words in = words("--to", "from", {"--seconds", "1"});
  in[2] = at("paris:secret");
  EXPECT_NE(run(in).err.find("the bucket holds the store"), std::string::npos);
  in[2] = at("paris:hush-hush") + "," + at("rome:hush-hush");
  const Said out = run(in);
  EXPECT_NE(out.err.find(url() + "," + url() + " is away: Authorization Violation"),
            std::string::npos)
      << out.err;
  EXPECT_EQ(out.err.find("hush-hush"), std::string::npos) << out.err;
}

// A row that is longer than the server takes: nothing is sent, and who runs it learns which and
// why.
TEST_F(Secured, WhatIsTooLongForTheServerIsTold) {
  serve("max_payload: 16384\n");
  const Words words_of_sender = words("--to", "long", {});
  const auto keep = [&](std::size_t length) {
    ospf_tables::Session session(file("long"), ospf_tables::Session::Missing::is_made);
    session.changing([&] {
      ospf_tables::Instance instance{
          .family = ospf_tables::Family::ipv4, .router_id = 0x0a000001, .areas = {}};
      instance.areas.push_back({.id = 0, .interfaces = {}});
      for (const char end : {'a', 'b'}) {
        ospf_tables::Interface interface {};
        interface.name = std::string(length, 'x') + end;
        interface.network_type = 1;
        instance.areas.back().interfaces.push_back(interface);
      }
      std::vector<std::unique_ptr<ospf_tables::NewInstance>> instances;
      instances.push_back(std::make_unique<ospf_tables::NewInstance>(session, instance));
      ospf_tables::add_instances(session, instances);
    });
  };
  keep(20000);
  expect_refused(
      words_of_sender,
      {"replicate: found 2 messages that are too long for the server, the longest with 20",
       " bytes for ospf-harbor.site.row.", "expected at most 16256 (its max_payload)"});
  Words status = words("--from", "to", {});
  status.push_back("--status");
  expect_refused(status, {"found no commit of site"});
  // One that grows while it is sent ends it too, and followers keep what they have.
  keep(100);
  ToolProcess sender(folder_, "sender", words_of_sender);
  ASSERT_TRUE(says(sender, "the bucket holds the store")) << sender.err();
  ToolProcess follower(folder_, "follower", words("--from", "to", {}));
  ASSERT_TRUE(says(follower, "the store holds what the sender sent")) << follower.err();
  const std::string before = run({"show", "--tree", "--store", file("to")}).out;
  keep(20000);
  EXPECT_EQ(sender.wait(), 1);
  EXPECT_NE(sender.err().find("found 2 messages that are too long"), std::string::npos)
      << sender.err();
  EXPECT_EQ(run({"show", "--tree", "--store", file("to")}).out, before);
}

}  // namespace

}  // namespace replication_tests
