// A store that is kept up with a recorded network, in slices of its packets: after each it is what
// a load of all that was heard so far makes.
#include <gtest/gtest.h>

#include <map>

#include "capture_rows/network_rows.hpp"
#include "ospf_decode/capture.hpp"
#include "ospf_tables/tree.hpp"
#include "support/places.hpp"
#include "support/temporary_folder.hpp"

namespace {

using namespace ospf_tables;
using capture_rows::FollowedNetwork;

// The rows' texts by their paths.
class Texts : public TreeVisitor {
 public:
  explicit Texts(Session &session) {
    session.reading([&] { walk_tree(session, *this); });
  }
  bool enter(const RowView &row) override {
    found[row.path] = row.text();
    return true;
  }
  void leave() override {}

  std::map<std::string, std::string> found;
};

class FollowingARecording : public testing::Test {
 protected:
  FollowingARecording() : decoder_(network_) {
    EXPECT_TRUE(reader_.open_file(places::sample() + "/all.pcap"));
  }

  // False at the end.
  bool hear(int packets) {
    ospf_decode::Frame frame;
    for (; packets > 0; --packets) {
      if (reader_.next(frame) != ospf_decode::CaptureReader::Status::frame) return false;
      decoder_.decode(frame);
    }
    return true;
  }
  // How many LSAs the store was changed by; nothing changed without one.
  std::size_t follow() {
    std::size_t touched = 0;
    if (!followed_.has_changed(network_.last_time())) return 0;
    session_.changing([&] { touched = followed_.update(); });
    Session fresh;
    capture_rows::load_network(fresh, network_, network_.last_time(), true);
    EXPECT_EQ(Texts(session_).found, Texts(fresh).found);
    kelp_error error{};
    session_.reading([&] { kelp_database_check(session_.database(), nullptr, nullptr, &error); });
    EXPECT_EQ(error.code, 0) << error.text;
    return touched;
  }

  const TemporaryFolder folder_;
  ospf_decode::CaptureReader reader_;
  ospf_decode::Network network_;
  ospf_decode::FrameDecoder decoder_;
  Session session_{folder_.file("store"), Session::Missing::is_made};
  FollowedNetwork followed_{session_, network_};
};

TEST_F(FollowingARecording, GivesWhatALoadGivesAndTouchesWhatChanged) {
  std::size_t touched = 0;
  int updates = 0;
  while (hear(150)) {
    touched += follow();
    ++updates;
  }
  EXPECT_GT(updates, 10);
  EXPECT_GT(network_.lsdb().size(), 100u);
  // Loads of all would have been as many for each.
  EXPECT_LT(touched, network_.lsdb().size() * 10);
  EXPECT_FALSE(followed_.has_changed(network_.last_time()));
}

TEST_F(FollowingARecording, LoadsAllAnewWhenSomebodyElseChangedTheStore) {
  ASSERT_TRUE(hear(1500));
  follow();
  session_.changing([&] { clear_tree(session_); });
  ASSERT_TRUE(hear(300));
  EXPECT_GT(follow(), 100u);
  ASSERT_TRUE(hear(100));
  EXPECT_LT(follow(), 60u);
}

// A transaction that fails is undone, and the next one begins with all.
TEST_F(FollowingARecording, LoadsAllAnewAfterAFailure) {
  ASSERT_TRUE(hear(1500));
  follow();
  ASSERT_TRUE(hear(300));
  ASSERT_TRUE(followed_.has_changed(network_.last_time()));
  kelp_database_fail_allocation_after(session_.database(), 40);
  EXPECT_THROW(session_.changing([&] { followed_.update(); }), LibraryFailure);
  EXPECT_GT(follow(), 100u);
}

}  // namespace
