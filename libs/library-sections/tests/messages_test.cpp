// Message tables and their texts: what is read, and what is said of each way to be wrong.
#include "library_sections/messages.hpp"

#include <gtest/gtest.h>

#include "library_sections/error.hpp"
#include "support/sample_library.hpp"

namespace {

using library_sections::ElfFile;
using library_sections::Error;

library_sections::MessageStore read(const std::vector<sample::Section> &sections) {
  const sample::File file = sample::elf(sections);
  return library_sections::read_messages(ElfFile(file));
}

std::string complaint(const std::vector<sample::Section> &sections) {
  try {
    read(sections);
  } catch (const Error &error) {
    return error.what();
  }
  return "no complaint";
}

// The sections with the bytes of one changed.
template <typename Change>
std::string complaint_after(const std::string &name, Change change) {
  std::vector<sample::Section> sections = sample::Library().sections();
  change(sample::section(sections, name).bytes);
  return complaint(sections);
}

const std::string types_name = sample::Library().section_name(sample::Library().sources[0]);
const std::string texts_name = ".xlog_format_strings";
const std::string decoder_name = ".xlog_decoder";

TEST(MessagesTest, TablesAndTextsAreRead) {
  const sample::Library library;
  const library_sections::MessageStore store = read(library.sections());
  ASSERT_EQ(store.tables.size(), 2u);
  EXPECT_EQ(store.text_bytes, library.texts().size());
  EXPECT_EQ(store.compression, "bzip2");
  for (std::size_t i = 0; i < 2; ++i) {
    const sample::Source &expected = library.sources[i];
    EXPECT_EQ(store.tables[i].source, i);
    EXPECT_EQ(store.tables[i].identity, expected.identity);
    EXPECT_EQ(store.table(expected.identity.data()), &store.tables[i]);
    ASSERT_EQ(store.tables[i].messages.size(), expected.messages.size());
    for (std::size_t m = 0; m < expected.messages.size(); ++m) {
      EXPECT_EQ(store.tables[i].messages[m].text, expected.messages[m].text);
      EXPECT_EQ(store.tables[i].messages[m].signature(), expected.messages[m].signature);
      EXPECT_EQ(store.tables[i].messages[m].attributes & 0xffff, m);
    }
  }
  const std::uint8_t unknown[16] = {};
  EXPECT_EQ(store.table(unknown), nullptr);
}

// Texts follow the numbers of the sources, wherever the tables lie in the file.
TEST(MessagesTest, TextsFollowTheNumbersOfTheSources) {
  std::vector<sample::Section> sections = sample::Library().sections();
  std::swap(sections[0], sections[1]);
  EXPECT_EQ(read(sections).tables[0].messages[1].text, "Corrupted Handle");
}

TEST(MessagesTest, MissingSectionsAreNamed) {
  std::vector<sample::Section> sections = sample::Library().sections();
  sections.erase(sections.begin(), sections.begin() + 2);
  EXPECT_EQ(complaint(sections),
            "sections .xlog_luids_*: found none, expected one for each trace source");
  for (const std::string &name : {texts_name, decoder_name}) {
    sections = sample::Library().sections();
    std::erase_if(sections, [&](const sample::Section &one) { return one.name == name; });
    EXPECT_EQ(complaint(sections), "section " + name + ": found none, expected one such section");
  }
}

TEST(MessagesTest, TableThatIsNoneIsRefused) {
  const std::string where = "section " + types_name;
  EXPECT_EQ(complaint_after(types_name, [](std::string &bytes) { bytes[0] = 2; }),
            where + ", byte 0: version: found 2, expected 1");
  EXPECT_EQ(complaint_after(types_name, [](std::string &bytes) { bytes[4] = 0; }),
            where +
                ", byte 4: identity: found 001112131415161718191a1b1c1d1e1f, expected the one of "
                "the section's name");
  EXPECT_EQ(complaint_after(types_name, [](std::string &bytes) { bytes.pop_back(); }),
            where +
                ", byte 20: message entries: found 23 bytes, expected a multiple of 6 (the "
                "section is cut)");
  EXPECT_EQ(complaint_after(types_name, [](std::string &bytes) { bytes.resize(10); }),
            where +
                ", byte 4: identity: found 6 bytes left, expected 16 (the file is cut or "
                "damaged)");
  EXPECT_EQ(complaint_after(types_name, [](std::string &bytes) { bytes[28] = 8; }),
            where + ", byte 26: signature of message 1: found 8, expected at most 7");
}

TEST(MessagesTest, SourcesAreNumberedWithoutGaps) {
  sample::Library library;
  library.sources[1].number = 0;
  EXPECT_NE(complaint(library.sections()).find("number of the source: found 0, expected 1"),
            std::string::npos);
  library.sources[1].number = 7;
  EXPECT_NE(complaint(library.sections()).find("number of the source: found 7, expected 1"),
            std::string::npos);
}

TEST(MessagesTest, SignatureHasToFitTheConversions) {
  sample::Library library;
  library.sources[0].messages[2].text = "variant %u of %s";
  EXPECT_EQ(complaint(library.sections()),
            "section " + types_name +
                ", byte 32: text of message 2: found \" variant %u of %s\" with the conversions "
                "\"%u %s\", expected \"%u %u\" of signature 2");
  for (const char *text : {"%n", "%", "%5u %u", "%u %u %u", "%u %%u", "%lu %u"}) {
    library.sources[0].messages[2].text = text;
    EXPECT_NE(complaint(library.sections()), "no complaint") << text;
  }
  library.sources[0].messages[2].text = "100%% of %u and %u";
  EXPECT_EQ(complaint(library.sections()), "no complaint");
}

TEST(MessagesTest, TextNeedsItsBlankAndNoNul) {
  sample::Library library;
  library.sources[0].messages[1].text = std::string("a\0b", 3);
  EXPECT_NE(complaint(library.sections()).find("found a NUL in \" a\\x00b\""), std::string::npos);
  // A byte moved from one length to the next keeps the sum and loses the blank.
  EXPECT_NE(complaint_after(types_name,
                            [](std::string &bytes) {
                              ++bytes[24];
                              --bytes[30];
                            })
                .find("text of message 1: found \"Corrupted Handle\", expected a text with a blank "
                      "in front"),
            std::string::npos);
}

TEST(MessagesTest, LengthsHaveToAddUpToTheText) {
  const sample::Library library;
  const std::size_t size = library.texts().size();
  // With the decoder changed alike, so that the text itself is what does not fit.
  const auto longer_by = [&](int difference) {
    std::vector<sample::Section> sections = library.sections();
    auto &length = sample::section(sections, types_name).bytes[24];
    length = static_cast<char>(length + difference);
    auto &total = sample::section(sections, decoder_name).bytes[19];
    total = static_cast<char>(total + difference);
    return complaint(sections);
  };
  EXPECT_EQ(longer_by(1), "section .xlog_format_strings: found a text of " + std::to_string(size) +
                              " bytes, expected " + std::to_string(size + 1) +
                              ", as the lengths of all messages add up to");
  EXPECT_NE(longer_by(-1).find("found more than " + std::to_string(size - 1) + " bytes"),
            std::string::npos);
}

// A few bytes that stand for a gigabyte cost neither the time nor the memory of one.
TEST(MessagesTest, TextIsNeverLongerThanItsLengths) {
  sample::Library library;
  std::vector<sample::Section> sections = library.sections();
  const std::string bomb = sample::compressed(std::string(32 << 20, ' '));
  ASSERT_LT(bomb.size(), 1000u);
  sample::section(sections, texts_name).bytes = bomb;
  std::string &decoder = sample::section(sections, decoder_name).bytes;
  decoder.resize(23);
  sample::put32(decoder, bomb.size());
  EXPECT_NE(complaint(sections).find("found more than " + std::to_string(library.texts().size()) +
                                     " bytes, expected as many as the lengths"),
            std::string::npos);
}

TEST(MessagesTest, MoreTextThanAnyLibraryHasIsRefused) {
  sample::Library library;
  std::vector<sample::Section> sections = library.sections();
  std::string &table = sample::section(sections, types_name).bytes;
  for (int i = 0; i < 1100; ++i) {
    sample::put32(table, 1 << 16);
    sample::put16(table, 0xffff);
  }
  EXPECT_NE(complaint(sections).find("expected at most 67108864"), std::string::npos);
}

TEST(MessagesTest, DamagedTextIsRefused) {
  const auto changed = [](auto change) {
    std::vector<sample::Section> sections = sample::Library().sections();
    std::string &texts = sample::section(sections, texts_name).bytes;
    change(texts);
    std::string &decoder = sample::section(sections, decoder_name).bytes;
    decoder.resize(23);
    sample::put32(decoder, texts.size());
    return complaint(sections);
  };
  EXPECT_NE(changed([](std::string &bytes) { bytes[0] = 'X'; }).find("found no bzip2 stream"),
            std::string::npos);
  EXPECT_NE(changed([](std::string &bytes) {
              bytes[40] ^= 0x55;
            }).find("found damaged bytes or a wrong checksum"),
            std::string::npos);
  EXPECT_NE(changed([](std::string &bytes) {
              bytes.resize(bytes.size() / 2);
            }).find("its end within a block (the section is cut)"),
            std::string::npos);
  EXPECT_NE(changed([](std::string &bytes) { bytes.clear(); }).find("(the section is cut)"),
            std::string::npos);
  EXPECT_NE(changed([](std::string &bytes) {
              bytes += "more";
            }).find("found 4 bytes behind its end, expected none"),
            std::string::npos);
}

TEST(MessagesTest, DecoderHasToAgreeWithTheRest) {
  const std::string where = "section .xlog_decoder, byte ";
  const auto changed = [](std::size_t at) {
    return complaint_after(decoder_name, [&](std::string &bytes) { bytes[at] ^= 0x40; });
  };
  EXPECT_EQ(changed(0), where +
                            "0: name of the compression: found \"\"zip2\\x00\\x00\", expected "
                            "\"bzip2\\x00\\x00\"");
  EXPECT_EQ(changed(7), where + "7: layout of the message tables: found 65, expected 1");
  EXPECT_EQ(changed(11), where + "11: number of sources: found 66, expected 2");
  EXPECT_EQ(changed(15), where + "15: number of messages: found 72, expected 8");
  EXPECT_NE(changed(19).find(where + "19: bytes of text: found "), std::string::npos);
  EXPECT_NE(changed(23).find(where + "23: bytes of compressed text: found "), std::string::npos);
  EXPECT_EQ(complaint_after(decoder_name, [](std::string &bytes) { bytes += 'x'; }),
            where + "27: end of the section: found 1 more bytes, expected none");
  EXPECT_EQ(complaint_after(decoder_name, [](std::string &bytes) { bytes.pop_back(); }),
            where +
                "23: bytes of compressed text: found 3 bytes left, expected 4 (the file is cut "
                "or damaged)");
}

}  // namespace
