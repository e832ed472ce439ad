// The tool's commands for whole trees in processes of their own: files that come back as they left,
// two processes over a socket, and wrong input of every kind.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstring>

#include "sources/tree_file.hpp"
#include "support/processes.hpp"
#include "tree_exchange/stream_format.hpp"

namespace {

using tool_tests::ProcessTest;
using tool_tests::ToolProcess;

class TreeFiles : public ProcessTest {};

TEST_F(TreeFiles, ComeBackAsTheyLeft) {
  expect_done({"export", "--image", file("a.tree"), "--xml", file("a.xml"), "--text", file("a.txt"),
               "--from", sample_, other_sample_});
  expect_done(
      {"export", "--image", file("b.tree"), "--text", file("b.txt"), "--from", file("a.tree")});
  expect_done({"export", "--image", file("c.tree"), "--xml", file("c.xml"), "--text", file("c.txt"),
               "--from", file("a.xml")});
  EXPECT_GT(content_of(file("a.tree")).size(), 5000u);
  EXPECT_EQ(content_of(file("a.tree")), content_of(file("b.tree")));
  EXPECT_EQ(content_of(file("a.tree")), content_of(file("c.tree")));
  EXPECT_EQ(content_of(file("a.xml")), content_of(file("c.xml")));
  EXPECT_EQ(content_of(file("a.txt")), content_of(file("b.txt")));
  EXPECT_EQ(content_of(file("a.txt")), content_of(file("c.txt")));
}

TEST_F(TreeFiles, ImportShowsWhatShowShows) {
  expect_done({"export", "--image", file("a.tree"), "--xml", file("a.xml"), "--text", file("a.txt"),
               "--from", sample_});
  for (const auto &words : {std::vector<std::string>{"import", "--image", file("a.tree"), "--tree"},
                            {"import", "--xml", file("a.xml"), "--tree"},
                            {"show", "--tree", "--from", file("a.tree")}}) {
    const Said said = run(words);
    EXPECT_EQ(said.status, 0) << said.err;
    EXPECT_EQ(said.out, content_of(file("a.txt")));
  }
  const Said part = run({"import", "--image", file("a.tree"), "--path", "area/0.0.0.0"});
  EXPECT_LT(part.out.size(), content_of(file("a.txt")).size());
  EXPECT_NE(part.out.find("area/0.0.0.0"), std::string::npos);
}

TEST_F(TreeFiles, AddToWhatIsThere) {
  expect_done({"export", "--image", file("one.tree"), "--from", sample_});
  expect_done({"export", "--image", file("two.tree"), "--from", other_sample_});
  expect_done(
      {"export", "--image", file("both.tree"), "--from", file("one.tree"), file("two.tree")});
  expect_done({"export", "--image", file("merged.tree"), "--from", file("two.tree"),
               file("one.tree"), file("two.tree")});
  EXPECT_EQ(content_of(file("merged.tree")), content_of(file("both.tree")));
  const std::string twice =
      run({"show", "--from", file("one.tree"), file("two.tree"), file("one.tree")}).err;
  EXPECT_NE(twice.find("instance ipv4,10.255.0.1 of one source gave way"), std::string::npos);
  EXPECT_EQ(run({"show", "--from", file("one.tree"), file("two.tree")}).err.find("gave way"),
            std::string::npos);
}

TEST_F(TreeFiles, AreCommandsOfTheShell) {
  expect_done({"export", "--image", file("a.tree"), "--text", file("a.txt"), "--from", sample_});
  put("lines", "import --image " + file("a.tree") + "\nexport --image " + file("b.tree") +
                   "\nimport --image " + file("none") + "\nexport\nshow --tree\n");
  const Said said = run({"shell"}, file("lines"));
  EXPECT_EQ(said.status, 2);
  EXPECT_NE(said.err.find("cannot open " + file("none") + ": No such file"), std::string::npos)
      << said.err;
  EXPECT_NE(said.err.find("ospf-harbor: export: "), std::string::npos) << said.err;
  EXPECT_EQ(said.out, content_of(file("a.txt")));
  EXPECT_EQ(content_of(file("b.tree")), content_of(file("a.tree")));
}

// What is told of at export is what import refuses, to the byte.
TEST_F(TreeFiles, AreToldOfWhenImportWouldRefuseTheirSize) {
  using tool::TreeForm;
  constexpr std::uint64_t largest = tree_exchange::largest_stream;
  for (const TreeForm form : {TreeForm::image, TreeForm::xml}) {
    EXPECT_EQ(tool::too_many_bytes(form, "a file", largest), "");
    EXPECT_EQ(tool::too_many_bytes(form, "a file", largest + 1),
              "a file has 268435457 bytes, and import takes no more than 268435456");
  }
  EXPECT_EQ(tool::too_many_bytes(TreeForm::text, "a file", largest + 1), "");
  put("large", "");
  std::filesystem::resize_file(file("large"), largest + 1);
  expect_refused({"import", "--xml", file("large")}, {"found more than 268435456 bytes"});
}

class WrongFiles : public ProcessTest {
 protected:
  WrongFiles() {
    expect_done({"export", "--image", file("a.tree"), "--xml", file("a.xml"), "--from", sample_});
    image_ = content_of(file("a.tree"));
    xml_ = content_of(file("a.xml"));
  }
  void expect_xml_refused(const std::string &from, const std::string &to,
                          const std::vector<std::string> &texts) {
    std::string changed = xml_;
    const std::size_t at = changed.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    changed.replace(at, from.size(), to);
    put("bad.xml", changed);
    expect_refused({"import", "--xml", file("bad.xml"), "--tree"}, texts);
  }
  std::string image_;
  std::string xml_;
};

TEST_F(WrongFiles, AreRefusedWithWhatWasFoundAndExpected) {
  expect_refused({"import", "--image", file("none")}, {"cannot open", "none: No such file"});
  expect_refused({"import", "--image", file("")}, {"Is a directory"});
  expect_refused({"import", "--image", file("a.xml")}, {"a.xml: offset 0x0: found 3c 3f 78"});
  expect_refused({"import", "--xml", file("a.tree")},
                 {"a.tree", "expected a well-formed document"});
  put("cut", image_.substr(0, 1000));
  expect_refused({"import", "--image", file("cut"), "--tree"},
                 {"offset 0x3e8: found the end of the bytes", "the rest of the frame at"});
  put("empty", "");
  expect_refused({"import", "--image", file("empty")}, {"offset 0x0", "the header of a tree"});
  expect_refused({"show", "--from", file("empty")}, {"found a file of no known kind"});
  expect_refused({"export", "--text", file("text"), "--from", file("none")}, {"No such file"});
  EXPECT_FALSE(std::filesystem::exists(file("text")));
  expect_refused({"export", "--text", file("no/folder"), "--from", sample_}, {"No such file"});
}

TEST_F(WrongFiles, NothingLoadedIsNotExported) {
  put("lines", "export --image " + file("b.tree") + "\nsend --to unix:" + file("s") + "\n");
  const Said said = run({"shell"}, file("lines"));
  EXPECT_EQ(said.status, 1);
  EXPECT_EQ(said.err,
            "ospf-harbor: export: nothing is loaded\nospf-harbor: send: nothing is loaded\n");
  EXPECT_FALSE(std::filesystem::exists(file("b.tree")));
}

TEST_F(WrongFiles, XmlIsRefusedWithPathLineAndColumn) {
  expect_xml_refused(
      "<area_id>0</area_id>", "<area_id>-1</area_id>",
      {"ospf[1]/instance[1]/area[1], //ospf_area/area_id, line 11, column ", "found", "expected"});
  expect_xml_refused("name=\"tbl_ospf_area\"", "name=\"tbl_ospf_aria\"",
                     {"ospf[1]/instance[1], line 9, column 11: found the table \"tbl_ospf_aria\""});
  expect_xml_refused("reference=\"area\"", "reference=\"areas\"",
                     {"found the reference \"areas\", expected area, link_scope_lsas or "
                      "multi_topology of tbl_ospf_instance_rev1"});
  expect_xml_refused("version=\"1\" module", "version=\"2\" module",
                     {"line 2, column 1: found version \"2\", expected 1"});
  expect_xml_refused("<ospf_harbor_tree", "<tree", {"expected a well-formed document"});
  expect_xml_refused("<area_id>0</area_id>", "<area_id>1</area_id>",
                     {"found a second row area/0.0.0.1, expected each key once in a table"});
  expect_xml_refused("<area_id>0</area_id>", "<area_id>2</area_id>",
                     {"found the row area/0.0.0.1 behind area/0.0.0.2, expected the order"});
  expect_xml_refused("<row>", "<row>text",
                     {"ospf[1], line 4, column ",
                      "found text, expected "
                      "<tbl_ospf_rev1>"});
  expect_xml_refused("<row>", "<row kind=\"x\">", {"found the attribute kind"});
  expect_xml_refused("<row>", "<rows>", {"expected a well-formed document"});
  expect_xml_refused("<ospf_harbor_tree", "<!DOCTYPE x><ospf_harbor_tree", {"line 2"});
  put("cut.xml", xml_.substr(0, xml_.size() / 2));
  expect_refused({"import", "--xml", file("cut.xml")}, {"cut.xml", "line "});
}

TEST_F(WrongFiles, AnOldFileStaysWhenExportFails) {
  put("kept", "what was there");
  expect_refused({"export", "--image", file("kept"), "--from", file("none")}, {"No such file"});
  EXPECT_EQ(content_of(file("kept")), "what was there");
}

class Dump : public WrongFiles {};

TEST_F(Dump, NamesWhatIsThereAndSaysWhatIsWrong) {
  const Said sound = run({"dump", "--annotate", file("a.tree")});
  EXPECT_EQ(sound.status, 0) << sound.err;
  EXPECT_NE(sound.out.find("ospf_interface.name text: \"core\""), std::string::npos);
  EXPECT_EQ(sound.out.find("\n! "), std::string::npos);
  std::string changed = image_;
  changed[changed.find("core")] = 'C';
  put("bad.tree", changed);
  const Said bad = run({"dump", "--annotate", file("bad.tree")});
  expect_refusal(bad, {"found the checksum ", ", which the bytes have"});
  EXPECT_NE(bad.out.find("\n! offset 0x"), std::string::npos);
}

TEST_F(Dump, ShowsImagesOfRecordsObjectsAndKeys) {
  const std::size_t frame = image_.find('R');
  const std::string record = image_.substr(frame + 5, 98);
  put("record", record + record);
  const Said two = run({"dump", "--annotate", file("record")});
  EXPECT_EQ(two.status, 0) << two.err;
  EXPECT_NE(two.out.find("\n0062  bc "), std::string::npos) << two.out;
  put("object", record.substr(43));
  const Said object = run({"dump", "--annotate", file("object"), "--object", "ospf_rev1"});
  EXPECT_EQ(object.status, 0) << object.err;
  EXPECT_NE(object.out.find("ospf_rev1.singleton_id"), std::string::npos);
  put("key", std::string("\0\0\0\7", 4));
  const Said key = run({"dump", "--annotate", file("key"), "--key", "tbl_ospf_area"});
  EXPECT_EQ(key.status, 0) << key.err;
  EXPECT_EQ(run({"dump", "--annotate", file("key"), "--key", "tbl_none"}).status, 1);
  EXPECT_EQ(run({"dump", "--annotate", file("key")}).status, 1);
}

class TwoProcesses : public ProcessTest {
 protected:
  void expect_arrives(const std::string &at) {
    ToolProcess receiver(folder_, "receiver", {"receive", "--at", at, "--tree"});
    const std::string place = receiver.place();
    std::vector<std::string> words{"send", "--to", place, "--from", sample_};
    if (place.starts_with("tcp:")) words.insert(words.end(), {"--token", token_of(receiver)});
    expect_done(words);
    EXPECT_EQ(receiver.wait(), 0) << receiver.err();
    expect_done({"export", "--text", file("sent.txt"), "--from", sample_});
    EXPECT_EQ(receiver.out(), content_of(file("sent.txt")));
    EXPECT_GT(receiver.out().size(), 1000u);
  }
  // The one that the receiver made.
  static std::string token_of(const ToolProcess &receiver) {
    const std::string said = receiver.err();
    constexpr char words[] = "token: ";
    const std::size_t at = said.find(words) + sizeof words - 1;
    return said.substr(at, said.find(' ', at) - at);
  }
  // A receiver of one tree, or more, at a TCP port for senders that write "token T" first.
  std::unique_ptr<ToolProcess> receiver(const std::vector<std::string> &more = {}) {
    std::vector<std::string> words{"receive", "--at", any_port, "--token", "T", "--tree"};
    words.insert(words.end(), more.begin(), more.end());
    return std::make_unique<ToolProcess>(folder_, "receiver", words);
  }
  // After what others did it takes a tree as if they had not been.
  void expect_still_receives(ToolProcess &receiver, const std::string &place,
                             const std::vector<std::string> &told) {
    expect_done({"send", "--to", place, "--token", "T", "--from", sample_});
    EXPECT_EQ(receiver.wait(), 0) << receiver.err();
    EXPECT_EQ(receiver.out(), run({"show", "--tree", "--from", sample_}).out);
    for (const std::string &text : told) {
      EXPECT_NE(receiver.err().find(text), std::string::npos) << receiver.err();
    }
  }
  static void say(int socket_, const std::string &text) {
    EXPECT_GT(send(socket_, text.data(), text.size(), MSG_NOSIGNAL), 0);
  }
  // A socket that is connected to the receiver.
  static int connected(const std::string &place) {
    const std::string port = place.substr(place.rfind(':') + 1);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoul(port)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(socket_, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    return socket_;
  }
  static std::string answer(int socket_) {
    std::string all;
    char piece[256];
    for (ssize_t got; (got = read(socket_, piece, sizeof piece)) > 0;) {
      all.append(piece, static_cast<std::size_t>(got));
    }
    return all;
  }
  static constexpr char any_port[] = "tcp:127.0.0.1:0";
};

TEST_F(TwoProcesses, MeetAtAUnixSocket) {
  expect_arrives("unix:" + file("socket"));
  EXPECT_FALSE(std::filesystem::exists(file("socket")));
}
TEST_F(TwoProcesses, MeetAtATcpPort) { expect_arrives(any_port); }
TEST_F(TwoProcesses, MeetAtATcpPortOfTheOtherFamily) { expect_arrives("tcp:[::1]:0"); }

TEST_F(TwoProcesses, TheSocketIsForItsOwnerAlone) {
  ToolProcess receiver(folder_, "receiver", {"receive", "--at", "unix:" + file("socket")});
  receiver.place();
  struct stat there;
  ASSERT_EQ(stat(file("socket").c_str(), &there), 0);
  EXPECT_EQ(there.st_mode & 0777, 0600u);
}

TEST_F(TwoProcesses, ASocketThatWasLeftBehindIsReplaced) {
  {
    ToolProcess ended(folder_, "ended", {"receive", "--at", "unix:" + file("socket")});
    ended.place();
  }
  EXPECT_TRUE(std::filesystem::exists(file("socket")));
  expect_arrives("unix:" + file("socket"));
}

TEST_F(TwoProcesses, ASocketInUseAndAnotherFileAreLeftAlone) {
  ToolProcess receiver(folder_, "receiver", {"receive", "--at", "unix:" + file("socket")});
  receiver.place();
  expect_refused({"receive", "--at", "unix:" + file("socket")}, {"found a socket that is in use"});
  put("file", "kept");
  expect_refused({"receive", "--at", "unix:" + file("file")}, {"found a file that is no socket"});
  EXPECT_EQ(content_of(file("file")), "kept");
  // The one that was asked whether it lives still takes a tree.
  expect_done({"send", "--to", "unix:" + file("socket"), "--from", sample_});
  EXPECT_EQ(receiver.wait(), 0) << receiver.err();
}

TEST_F(TwoProcesses, OnlyPlacesOnThisMachineAreTaken) {
  for (const char *place : {"tcp:0.0.0.0:7", "tcp:192.0.2.1:7", "tcp:localhost:7", "tcp:[::]:7"}) {
    expect_wrong_words({"receive", "--at", place}, {"receive --at: found the host", "loopback"});
    expect_wrong_words({"send", "--to", place, "--from", sample_}, {"send --to: found the host"});
  }
  for (const char *place :
       {"tcp:127.0.0.1", "tcp:127.0.0.1:x", "tcp:127.0.0.1:70000", "pipe:x", ""}) {
    expect_wrong_words({"receive", "--at", place},
                       {"receive --at: found \"", "expected unix:PATH"});
  }
  expect_wrong_words({"receive", "--at", "unix:"}, {"found a path of 0 bytes"});
  expect_wrong_words({"receive", "--at", "unix:/" + std::string(200, 'x')},
                     {"expected 1 to 107 bytes"});
}

TEST_F(TwoProcesses, NobodyThereIsToldToTheSender) {
  expect_refused({"send", "--to", "unix:" + file("socket"), "--from", sample_},
                 {"No such file", "expected a process that receives"});
  expect_refused({"send", "--to", "tcp:127.0.0.1:1", "--from", sample_}, {"Connection refused"});
}

TEST_F(TwoProcesses, TheReceiverWaitsNoLongerThanItIsTold) {
  expect_refused({"receive", "--at", any_port, "--timeout", "0.2"},
                 {"found nobody in the time that was given, expected a sender"});
}

TEST_F(TwoProcesses, ASenderThatStopsInTheMiddleCostsItself) {
  expect_done({"export", "--image", file("a.tree"), "--from", sample_});
  const auto waiting = receiver();
  const std::string place = waiting->place();
  const int sender = connected(place);
  say(sender, "token T\n" + content_of(file("a.tree")).substr(0, 2000));
  shutdown(sender, SHUT_WR);
  const std::string why = "offset 0x7d0: found the end of the bytes";
  EXPECT_NE(answer(sender).find(why), std::string::npos);
  close(sender);
  expect_still_receives(*waiting, place, {"ospf-harbor: receive: " + place + ", sender 1: " + why});
}

TEST_F(TwoProcesses, ASenderThatResetsOrIsEndedCostsItself) {
  const auto waiting = receiver();
  const std::string place = waiting->place();
  for (const char *text : {"", "token T\n", "token T\n\x89OHT", "tok"}) {
    const int sender = connected(place);
    if (*text != 0) say(sender, text);
    const linger at_once{1, 0};
    setsockopt(sender, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    close(sender);
  }
  expect_still_receives(*waiting, place, {"sender 4: found"});
}

TEST_F(TwoProcesses, SilentSendersHoldUpNobody) {
  const auto waiting = receiver();
  const std::string place = waiting->place();
  std::vector<int> silent;
  for (int i = 0; i < 24; ++i) {
    silent.push_back(connected(place));
    if (i % 2 == 0) say(silent.back(), i % 4 == 0 ? "t" : "token T\n\x89OHT");
  }
  const auto begin = std::chrono::steady_clock::now();
  expect_still_receives(*waiting, place, {"found too many senders at once"});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
  for (const int each : silent) close(each);
}

TEST_F(TwoProcesses, ASenderThatGoesSilentIsNotWaitedForForEver) {
  const auto waiting = receiver({"--timeout", "0.5"});
  const int sender = connected(waiting->place());
  say(sender, "token T\n\x89OHT");
  EXPECT_NE(answer(sender).find("refused found nothing in the time that was given"),
            std::string::npos);
  close(sender);
  EXPECT_EQ(waiting->wait(), 1);
  EXPECT_NE(waiting->err().find("found nobody in the time that was given but 1 sender that was "
                                "refused, expected a sender"),
            std::string::npos)
      << waiting->err();
  EXPECT_EQ(waiting->out(), "");
}

TEST_F(TwoProcesses, RubbishIsRefusedAndTheSenderLearnsWhy) {
  const auto waiting = receiver();
  const std::string place = waiting->place();
  const int sender = connected(place);
  say(sender, "token T\n" + std::string(300000, 'x'));
  shutdown(sender, SHUT_WR);
  const std::string said = answer(sender);
  EXPECT_TRUE(said.starts_with("refused ")) << said;
  EXPECT_NE(said.find("offset 0x0: found 78 78 78 78 78 78 78 78"), std::string::npos) << said;
  EXPECT_EQ(said.find('\n'), said.size() - 1);
  close(sender);
  expect_still_receives(*waiting, place, {"sender 1: offset 0x0: found 78 78"});
}

TEST_F(TwoProcesses, ATreeAboveTheLimitIsRefusedAtBothEnds) {
  const auto waiting = receiver({"--limit", "1000", "--timeout", "1"});
  expect_refused({"send", "--to", waiting->place(), "--token", "T", "--from", sample_},
                 {"the receiver refused the tree", "found more than 1000 bytes"});
  EXPECT_EQ(waiting->wait(), 1);
  EXPECT_NE(waiting->err().find("found more than 1000 bytes"), std::string::npos);
}

TEST_F(TwoProcesses, SeveralAreServedAtOnceAndSeveralTreesTaken) {
  const auto waiting = receiver({"--trees", "2"});
  const std::string place = waiting->place();
  expect_done({"export", "--image", file("one.tree"), "--from", sample_});
  expect_done({"export", "--image", file("two.tree"), "--from", other_sample_});
  const std::string tree = "token T\n" + content_of(file("one.tree"));
  const int slow = connected(place);
  say(slow, tree.substr(0, 3000));
  expect_done({"send", "--to", place, "--token", "T", "--from", other_sample_});
  const int late = connected(place);
  say(late, tree.substr(0, 100));
  say(slow, tree.substr(3000));
  shutdown(slow, SHUT_WR);
  EXPECT_TRUE(answer(slow).starts_with("ok "));
  EXPECT_NE(answer(late).find("refused found as many trees as this receiver takes"),
            std::string::npos);
  close(slow);
  close(late);
  EXPECT_EQ(waiting->wait(), 0) << waiting->err();
  EXPECT_EQ(waiting->out(),
            run({"show", "--tree", "--from", file("one.tree"), file("two.tree")}).out);
}

TEST_F(TwoProcesses, ATcpPortAsksForTheTokenAndSaysWhy) {
  ToolProcess waiting(folder_, "waiting", {"receive", "--at", any_port, "--tree"});
  const std::string place = waiting.place();
  const std::string token = token_of(waiting);
  EXPECT_EQ(token.size(), 32u) << waiting.err();
  EXPECT_NE(waiting.err().find("any user of this machine can connect"), std::string::npos);
  const std::vector<std::string> why{"found no token, or another one",
                                     "any user of the machine can connect"};
  std::string wrong = token;
  wrong.back() = wrong.back() == '0' ? '1' : '0';
  expect_refused({"send", "--to", place, "--from", sample_}, why);
  for (const std::string &each : {wrong, token.substr(1), token + "0", std::string("T")}) {
    expect_refused({"send", "--to", place, "--token", each, "--from", sample_}, why);
  }
  for (const char *each : {"", "a b", "\x7f"}) {
    EXPECT_EQ(run({"send", "--to", place, "--token", each, "--from", sample_}).status, 2) << each;
  }
  const int sender = connected(place);
  shutdown(sender, SHUT_WR);
  EXPECT_EQ(answer(sender), "");
  close(sender);
  setenv("OSPF_HARBOR_TOKEN", token.c_str(), 1);
  expect_done({"send", "--to", place, "--from", sample_});
  unsetenv("OSPF_HARBOR_TOKEN");
  EXPECT_EQ(waiting.wait(), 0) << waiting.err();
  EXPECT_EQ(waiting.out(), run({"show", "--tree", "--from", sample_}).out);
}

// Also while somebody is in the middle of a tree; and one that was ignored stays so.
TEST_F(TwoProcesses, SignalsTakeTheSocketFileAway) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    const std::string at = "unix:" + file("socket");
    ToolProcess waiting(folder_, "waiting", {"receive", "--at", at, "--tree"});
    waiting.place();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, file("socket").c_str());
    const int sender = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(connect(sender, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    say(sender, "\x89OHT");
    kill(waiting.id(), number);
    siginfo_t end{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(waiting.id()), &end, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(end.si_code, CLD_KILLED);
    EXPECT_EQ(end.si_status, number);
    EXPECT_FALSE(std::filesystem::exists(file("socket")));
    close(sender);
  }
}

TEST_F(TwoProcesses, AReceiverThatIsEndedIsToldByTheSender) {
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, file("socket").c_str());
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  ToolProcess sender(folder_, "sender",
                     {"send", "--to", "unix:" + file("socket"), "--from", sample_});
  close(accept(listener, nullptr, nullptr));
  EXPECT_EQ(sender.wait(), 1);
  EXPECT_NE(sender.err().find("expected"), std::string::npos) << sender.err();
  ToolProcess next(folder_, "next", {"send", "--to", "unix:" + file("socket"), "--from", sample_});
  const int silly = accept(listener, nullptr, nullptr);
  ASSERT_EQ(write(silly, "maybe\n", 6), 6);
  EXPECT_EQ(next.wait(), 1);
  EXPECT_NE(next.err().find("found \"maybe\", expected the answer \"ok "), std::string::npos)
      << next.err();
  close(silly);
  close(listener);
}

}  // namespace
