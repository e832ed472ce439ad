// Stores under the tool: what one process loads another shows, and one that fails or is killed
// leaves what was there.
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <map>
#include <random>

#include "support/processes.hpp"

namespace {

using tool_tests::ProcessTest;
using tool_tests::ToolProcess;

class Stores : public ProcessTest {
 protected:
  using Words = std::vector<std::string>;

  // The command on the store.
  Said on_store(Words words) {
    words.insert(words.end(), {"--store", store_});
    return run(words);
  }
  void expect_on_store(const Words &words) {
    const Said said = on_store(words);
    EXPECT_EQ(said.status, 0) << said.err;
  }
  // A file with the tree of a private run that loads so.
  std::string loaded_so(const Words &loads) {
    std::string lines;
    for (const std::string &line : loads) lines += line + "\n";
    put("lines", lines + "export --image " + file("private.tree") + "\n");
    const Said said = run({"shell"}, file("lines"));
    EXPECT_EQ(said.status, 0) << said.err;
    return file("private.tree");
  }
  // The command on the store says what it says of the tree in a file.
  void expect_same(const Words &words, const std::string &tree) {
    SCOPED_TRACE(words[0]);
    Words there = words;
    there.insert(there.end(), {"--from", tree});
    const Said expected = run(there);
    EXPECT_EQ(expected.status, 0) << expected.err;
    EXPECT_GT(expected.out.size(), 100u);
    const Said found = on_store(words);
    EXPECT_EQ(found.status, 0) << found.err;
    EXPECT_EQ(found.out, expected.out);
  }
  void expect_sound() {
    const Said said = run({"store", "check", store_});
    EXPECT_EQ(said.status, 0) << said.err;
    EXPECT_EQ(said.out, store_ + " is sound\n");
  }
  // Damages the store's file for the command, and expects that it says so and changes nothing.
  void expect_damage_refused(const std::string &damaged, const Words &texts) {
    const std::string sound = content_of(store_);
    put("store", damaged);
    expect_refusal(on_store({"show", "--tree"}), texts);
    expect_refusal(on_store({"load", "frr", other_sample_}), texts);
    expect_refusal(run({"store", "check", store_}), texts);
    EXPECT_TRUE(content_of(store_) == damaged);
    put("store", sound);
  }

  const std::string store_ = file("store");
  const std::string capture_ = places::sample() + "/all.pcap";
  const std::string load_one_ = "load frr " + sample_;
  const std::string load_other_ = "load frr " + other_sample_;
};

TEST_F(Stores, ShowWhatAnotherProcessLoaded) {
  expect_on_store({"load", "frr", sample_});
  expect_same({"show", "--tree"}, loaded_so({load_one_}));
  expect_on_store({"load", "frr", other_sample_});
  expect_on_store({"load", "capture", capture_});
  const std::string all = loaded_so({load_one_, load_other_, "load capture " + capture_});
  for (const Words &words : {Words{"show", "--tree"},
                             {"show", "area", "--json"},
                             {"lsdb"},
                             {"lsdb", "--detail"},
                             {"graph", "--dot"},
                             {"routes", "--router", "10.255.0.1", "--v2"}}) {
    expect_same(words, all);
  }
  for (const char *form : {"--image", "--xml", "--text"}) {
    expect_on_store({"export", form, file("there")});
    expect_done({"export", form, file("here"), "--from", all});
    EXPECT_TRUE(content_of(file("there")) == content_of(file("here"))) << form;
  }
  expect_sound();
}

TEST_F(Stores, TakeWhatIsImportedAndReceived) {
  std::filesystem::rename(loaded_so({load_one_}), file("one"));
  expect_on_store({"import", "--image", file("one")});
  expect_same({"show", "--tree"}, loaded_so({load_one_}));
  ToolProcess receiver(folder_, "receiver",
                       {"receive", "--at", "unix:" + file("socket"), "--store", store_});
  expect_done({"send", "--to", receiver.place(), "--from", loaded_so({load_other_})});
  EXPECT_EQ(receiver.wait(), 0) << receiver.err();
  expect_same({"show", "--tree"}, loaded_so({load_one_, load_other_}));
  ToolProcess private_one(folder_, "private", {"receive", "--at", "unix:" + file("s2"), "--tree"});
  expect_on_store({"send", "--to", private_one.place()});
  EXPECT_EQ(private_one.wait(), 0) << private_one.err();
  EXPECT_EQ(private_one.out(), on_store({"show", "--tree"}).out);
  put("lines", "show --tree\nload frr " + sample_ + "\nshow --from " + sample_ + "\n");
  const Said shell = run({"shell", "--store", store_}, file("lines"));
  EXPECT_EQ(shell.status, 2);
  EXPECT_TRUE(shell.out.starts_with(private_one.out()));
  EXPECT_NE(shell.err.find("--from: found it beside a store"), std::string::npos) << shell.err;
  expect_sound();
}

TEST_F(Stores, AreToldOf) {
  expect_on_store({"load", "frr", sample_, other_sample_});
  const Said said = run({"store", "info", store_});
  EXPECT_EQ(said.status, 0) << said.err;
  EXPECT_TRUE(said.out.starts_with(store_ + "\n")) << said.out;
  std::istringstream in(said.out.substr(store_.size() + 1));
  std::map<std::string, std::uint64_t> numbers;
  for (std::string line; std::getline(in, line);) {
    const std::size_t end = line.find_last_of(' ');
    const std::string name = line.substr(0, 25);
    numbers[name.substr(0, name.find_last_not_of(' ') + 1)] = std::stoull(line.substr(end));
  }
  EXPECT_EQ(numbers["bytes of the file"], std::filesystem::file_size(store_));
  // Rows that the JSON of the tree has, one a line, of a kind and in all.
  const std::string json = on_store({"show", "--json"}).out;
  EXPECT_EQ(numbers["rows"],
            static_cast<std::uint64_t>(std::count(json.begin(), json.end(), '\n')));
  EXPECT_EQ(numbers["  ospf"], 1u);
  EXPECT_EQ(numbers["  instance"], 4u);
  EXPECT_GE(numbers["tables"], 5u);
  EXPECT_GT(numbers["bytes in use"], numbers["blocks in use"]);
}

TEST_F(Stores, AreMadeByCommandsThatLoad) {
  for (const Words &words : {Words{"show", "--tree"},
                             {"lsdb"},
                             {"export", "--text", file("text")},
                             {"send", "--to", "unix:" + file("socket")}}) {
    expect_refusal(on_store(words), {store_, "No such file"});
  }
  expect_refused({"store", "info", store_}, {store_, "No such file"});
  expect_refused({"store", "check", store_}, {store_, "No such file"});
  EXPECT_FALSE(std::filesystem::exists(store_));
  expect_wrong_words({"show", "--from", sample_, "--store", store_},
                     {"show: --from: found it beside a store"});
  expect_wrong_words({"dump", "--annotate", "x", "--store", store_}, {"dump: --store: found"});
  EXPECT_FALSE(std::filesystem::exists(store_));
  expect_on_store({"load", "frr", sample_});
  EXPECT_TRUE(std::filesystem::exists(store_));
}

TEST_F(Stores, StayAsTheyWereWhenALoadFails) {
  expect_done({"export", "--image", file("two"), "--from", other_sample_});
  const std::string image = content_of(file("two"));
  put("cut", image.substr(0, image.size() - 100));
  expect_on_store({"load", "frr", sample_});
  expect_refusal(on_store({"import", "--image", file("two"), file("cut")}),
                 {"cut: offset", "found the end of the bytes"});
  expect_refusal(on_store({"load", "frr", other_sample_, file("none")}), {"none"});
  expect_same({"show", "--tree"}, loaded_so({load_one_}));
  expect_sound();
}

TEST_F(Stores, NameWhoChangesThemAndUndoWhoIsKilled) {
  expect_done({"export", "--image", file("two"), "--from", other_sample_});
  expect_on_store({"load", "frr", sample_});
  ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
  ToolProcess importer(folder_, "importer",
                       {"import", "--image", file("two"), file("pipe"), "--store", store_});
  const int pipe = open(file("pipe").c_str(), O_WRONLY);
  ASSERT_GE(pipe, 0);
  // The first file is in the tree, and half of the second is read.
  const std::string half = content_of(file("two")).substr(0, 1000);
  ASSERT_EQ(write(pipe, half.data(), half.size()), static_cast<ssize_t>(half.size()));
  for (int left = 1; left != 0;) {
    ASSERT_EQ(ioctl(pipe, FIONREAD, &left), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  expect_refusal(on_store({"show", "--tree"}), {std::to_string(importer.id())});
  kill(importer.id(), SIGKILL);
  EXPECT_EQ(importer.wait(), -SIGKILL);
  close(pipe);
  expect_same({"show", "--tree"}, loaded_so({load_one_}));
  expect_sound();
}

TEST_F(Stores, HoldTheOldTreeOrTheNewOneAfterAKill) {
  const std::string packets = content_of(capture_);
  put("half.pcap", packets.substr(0, packets.size() / 2));
  run({"export", "--image", file("0"), "--text", file("0.text"), "--from", file("half.pcap")});
  expect_done({"export", "--image", file("1"), "--text", file("1.text"), "--from", capture_});
  const std::string trees[] = {content_of(file("0.text")), content_of(file("1.text"))};
  ASSERT_NE(trees[0], trees[1]);
  const auto start = std::chrono::steady_clock::now();
  expect_on_store({"import", "--image", file("0")});
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  std::mt19937 random(12);
  std::uniform_real_distribution<double> moment(0, time.count());
  int killed = 0;
  for (int round = 1, now = 0; round <= 20; ++round) {
    SCOPED_TRACE(round);
    const int next = 1 - now;
    ToolProcess importer(folder_, "importer",
                         {"import", "--image", file(std::to_string(next)), "--store", store_});
    std::this_thread::sleep_for(std::chrono::duration<double>(moment(random)));
    kill(importer.id(), SIGKILL);
    if (importer.wait() == -SIGKILL) ++killed;
    const std::string shown = on_store({"show", "--tree"}).out;
    ASSERT_TRUE(shown == trees[now] || shown == trees[next]);
    if (shown == trees[next]) now = next;
    expect_sound();
  }
  EXPECT_GT(killed, 0);
}

TEST_F(Stores, AreRefusedWhenDamaged) {
  expect_on_store({"load", "frr", sample_});
  const std::string sound = content_of(store_);
  std::string damaged = sound;
  damaged[48] = static_cast<char>(damaged[48] ^ 1);  // of its identity, under the checksum
  expect_damage_refused(damaged, {store_, "found", "expected"});
  expect_damage_refused(sound.substr(0, sound.size() / 2), {store_, "found", "expected"});
  expect_damage_refused(content_of(capture_), {store_, "found", "expected"});
  expect_sound();
}

TEST_F(Stores, AreFoundDamagedByACheck) {
  expect_on_store({"load", "frr", sample_});
  std::string damaged = content_of(store_);
  // Live slots of the first span of objects, in its header.
  const std::size_t at = 65536 + (1 << 20) + 64 + 10;
  damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
  put("store", damaged);
  const Said said = run({"store", "check", store_});
  EXPECT_EQ(said.status, 1);
  EXPECT_GE(std::count(said.out.begin(), said.out.end(), '\n'), 1);
  EXPECT_EQ(said.out.find("sound"), std::string::npos) << said.out;
  EXPECT_NE(said.err.find("wrong"), std::string::npos) << said.err;
}

}  // namespace
