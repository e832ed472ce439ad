// Capture files: both formats, empty, cut and damaged.
#include "ospf_decode/capture.hpp"

#include <gtest/gtest.h>

#include "support/bytes.hpp"
#include "support/temporary_file.hpp"

namespace ospf_decode::testing {
namespace {

class CaptureFile : public ::testing::Test {
 protected:
  void write(const Octets &data) { file_.write(data); }

  const TemporaryFile file_{"capture"};
  const std::string &path_ = file_.path();
};

const Octets frame_octets =
    make_ethernet(0x0800, make_ipv4({}, make_packet_v2({}, make_hello_v2())));

TEST_F(CaptureFile, Pcap) {
  write(Writer().bytes(make_pcap_header()).bytes(make_pcap_record(100, 250000, frame_octets)));
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_)) << reader.error();
  EXPECT_EQ(reader.link_type(), 1);
  Frame frame;
  ASSERT_EQ(reader.next(frame), CaptureReader::Status::frame);
  EXPECT_EQ(frame.time, 100 * second + 250'000'000);
  EXPECT_EQ(frame.number, 1u);
  EXPECT_EQ(frame.data.size(), frame_octets.size());
  EXPECT_EQ(reader.next(frame), CaptureReader::Status::end);
}

TEST_F(CaptureFile, PcapWithNanoseconds) {
  write(Writer()
            .bytes(make_pcap_header(1, 0xa1b23c4d))
            .bytes(make_pcap_record(100, 123456789, frame_octets)));
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_)) << reader.error();
  Frame frame;
  ASSERT_EQ(reader.next(frame), CaptureReader::Status::frame);
  EXPECT_EQ(frame.time, 100 * second + 123456789);
}

TEST_F(CaptureFile, PcapNg) {
  Octets padded = frame_octets;
  padded.resize((padded.size() + 3) / 4 * 4);
  const auto length = static_cast<std::uint32_t>(frame_octets.size());
  const auto block = static_cast<std::uint32_t>(32 + padded.size());
  write(Writer()
            .u32(0x0a0d0d0a)
            .u32(28)
            .u32(0x1a2b3c4d)
            .u16(1)
            .u16(0)
            .u32(0xffffffff)
            .u32(0xffffffff)
            .u32(28)
            .u32(1)
            .u32(20)
            .u16(1)
            .u16(0)
            .u32(0)
            .u32(20)
            .u32(6)
            .u32(block)
            .u32(0)
            .u32(0)
            .u32(1000000)
            .u32(length)
            .u32(length)
            .bytes(padded)
            .u32(block));
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_)) << reader.error();
  Collector seen;
  FrameDecoder decoder(seen);
  decode_capture(reader, decoder);
  EXPECT_EQ(seen.hellos.size(), 1u);
  EXPECT_EQ(decoder.errors().total(), 0u);
}

TEST_F(CaptureFile, EmptyOfFrames) {
  write(make_pcap_header());
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_));
  Collector seen;
  FrameDecoder decoder(seen);
  decode_capture(reader, decoder);
  EXPECT_EQ(decoder.frames(), 0u);
  EXPECT_EQ(decoder.errors().total(), 0u);
}

TEST_F(CaptureFile, WhatIsNoCaptureIsRefusedWithAText) {
  CaptureReader reader;
  EXPECT_FALSE(reader.open_file(path_));
  EXPECT_FALSE(reader.error().empty());
  write({});
  EXPECT_FALSE(reader.open_file(path_));
  EXPECT_FALSE(reader.error().empty());
  write(Octets(100, 'x'));
  EXPECT_FALSE(reader.open_file(path_));
  Frame frame;
  EXPECT_EQ(reader.next(frame), CaptureReader::Status::end);
}

TEST_F(CaptureFile, OneThatIsCutIsReadUpToTheCut) {
  Octets file = Writer()
                    .bytes(make_pcap_header())
                    .bytes(make_pcap_record(1, 0, frame_octets))
                    .bytes(make_pcap_record(2, 0, frame_octets));
  file.resize(file.size() - 5);
  write(file);
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_));
  Collector seen;
  FrameDecoder decoder(seen);
  decode_capture(reader, decoder);
  EXPECT_EQ(seen.hellos.size(), 1u);
  EXPECT_EQ(decoder.errors()[ErrorKind::damaged_capture].count, 1u);
  EXPECT_EQ(decoder.errors()[ErrorKind::damaged_capture].first_packet, 2u);
  EXPECT_FALSE(reader.error().empty());
}

TEST_F(CaptureFile, FramesThatAreCut) {
  write(
      Writer()
          .bytes(make_pcap_header())
          .bytes(make_pcap_record(1, 0, Octets(frame_octets.begin(), frame_octets.end() - 4), 4)));
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_));
  Collector seen;
  FrameDecoder decoder(seen);
  decode_capture(reader, decoder);
  EXPECT_EQ(decoder.errors()[ErrorKind::cut_frame].count, 1u);
}

TEST_F(CaptureFile, OfAForeignLinkType) {
  write(Writer().bytes(make_pcap_header(195)).bytes(make_pcap_record(1, 0, frame_octets)));
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path_));
  Collector seen;
  FrameDecoder decoder(seen);
  decode_capture(reader, decoder);
  EXPECT_EQ(decoder.errors()[ErrorKind::foreign_link_type].count, 1u);
  EXPECT_EQ(decoder.errors()[ErrorKind::foreign_link_type].first_packet, 1u);
}

TEST_F(CaptureFile, AnInterfaceThatIsNotThereIsRefusedWithAText) {
  CaptureReader reader;
  EXPECT_FALSE(reader.open_live("no-such-interface-0"));
  EXPECT_FALSE(reader.error().empty());
}

// Where listening is not permitted, the refusal says so. Others may be talking on the link.
TEST_F(CaptureFile, AStopEndsAListeningOnASilentLink) {
  CaptureReader reader;
  if (!reader.open_live("lo", 50)) {
    EXPECT_FALSE(reader.error().empty());
    return;
  }
  Frame frame;
  EXPECT_NE(reader.next(frame), CaptureReader::Status::end);
  reader.stop();
  EXPECT_EQ(reader.next(frame), CaptureReader::Status::end);
  EXPECT_EQ(reader.next(frame), CaptureReader::Status::end);
}

}  // namespace
}  // namespace ospf_decode::testing
