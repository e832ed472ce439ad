// Processes that know different editions of the schema work on one store at the same time: each
// reads and writes the others' rows as far as it knows them, and is refused what it would spoil.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "evolution/edition.hpp"
#include "support/temporary_folder.hpp"

namespace evolution {

namespace {

// A peer with the store open.
class Program {
 public:
  Program(const std::string &edition_name, const std::string &file) {
    int to_peer[2], to_test[2];
    if (pipe2(to_peer, O_CLOEXEC) != 0 || pipe2(to_test, O_CLOEXEC) != 0) std::abort();
    const std::string peer = edition(edition_name).peer;
    process_ = fork();
    if (process_ == 0) {
      dup2(to_peer[0], STDIN_FILENO);
      dup2(to_test[1], STDOUT_FILENO);
      execl(peer.c_str(), peer.c_str(), "store", file.c_str(), nullptr);
      _exit(127);
    }
    close(to_peer[0]);
    close(to_test[1]);
    steps_ = fdopen(to_peer[1], "w");
    answers_ = fdopen(to_test[0], "r");
  }
  Program(const Program &) = delete;
  Program &operator=(const Program &) = delete;
  ~Program() {
    std::fclose(steps_);
    std::fclose(answers_);
    if (process_ != 0) waitpid(process_, nullptr, 0);
  }

  void tell(const std::string &step) {
    std::fprintf(steps_, "%s\n", step.c_str());
    std::fflush(steps_);
  }
  std::string ask(const std::string &step) {
    tell(step);
    std::string line;
    for (int c = std::fgetc(answers_); c != EOF && c != '\n'; c = std::fgetc(answers_)) {
      line += static_cast<char>(c);
    }
    return line;
  }

  // Each step is answered with "ok".
  void act(const std::vector<std::string> &steps) {
    for (const std::string &step : steps) EXPECT_EQ(ask(step), "ok") << step;
  }
  // The same in a transaction on a table; what the commit answers.
  std::string commit(const std::string &table, const std::vector<std::string> &steps) {
    act({"lock write", table});
    act(steps);
    return ask("unlock");
  }
  // What a step answers on the row at a place, under the read lock.
  std::string look(const std::string &table, int row, const std::string &step) {
    act({"lock read", table, "row " + std::to_string(row)});
    const std::string answer = ask(step);
    act({"unlock"});
    return answer;
  }

  bool is_alive() const { return process_ != 0; }
  void kill() {
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }

 private:
  pid_t process_ = 0;
  FILE *steps_ = nullptr;
  FILE *answers_ = nullptr;
};

const std::string areas = "table tbl_ospf_area areas ospf_area area_id";
const std::string neighbors = "table tbl_ospf_neighbor neighbors ospf_neighbor neighbor_id";
const std::string interfaces = "table tbl_ospf_interface interfaces ospf_interface name";

class EditionsOnAStore : public testing::Test {
 protected:
  ~EditionsOnAStore() override {
    for (Program *program : {&older, &current, &newer}) {
      if (program->is_alive() && program->ask("lock read") == "ok") {
        EXPECT_EQ(program->ask("check"), "sound");
      }
    }
  }

  TemporaryFolder folder;
  std::string file = folder.file("store");
  Program older{"older", file};
  Program current{"current", file};
  Program newer{"newer", file};
};

// The fields of an area as each edition has them.
const std::string none(80, '0');
std::string area_id(int id) { return "ospf_area.area_id 0 " + std::to_string(id) + " - -"; }

TEST_F(EditionsOnAStore, EachReadsTheRowsOfAllAsFarAsItKnows) {
  EXPECT_EQ(older.commit(areas, {"add ospf_area.area_id 1"}), "ok");
  EXPECT_EQ(current.commit(areas, {"add ospf_area.area_id 2"}), "ok");
  EXPECT_EQ(newer.commit(areas, {"add ospf_area.area_id 3", "value ospf_area.spf_runs 7"}), "ok");
  for (Program *program : {&older, &current, &newer}) {
    program->act({"lock read", areas});
    EXPECT_EQ(program->ask("walk"), "0 1 2");
    program->act({"unlock"});
  }
  const std::string interfaces_field = "; ospf_area.interfaces 0 " + none + " - -";
  const std::string lsas = "; ospf_area.area_scope_lsas ";
  const std::string runs = "; ospf_area.spf_runs ";
  const std::string first = "ospf_area. variant ";
  EXPECT_EQ(older.look(areas, 2, "show"), first + "2; " + area_id(3) + interfaces_field);
  EXPECT_EQ(current.look(areas, 2, "show"),
            first + "2; " + area_id(3) + interfaces_field + lsas + "0 " + none + " - -");
  EXPECT_EQ(newer.look(areas, 2, "show"), first + "2; " + area_id(3) + interfaces_field + lsas +
                                              "0 " + none + " - -" + runs + "0 7 - -");
  EXPECT_EQ(newer.look(areas, 0, "show"),
            first + "0; " + area_id(1) + interfaces_field + lsas + "43 - - -" + runs + "43 - - -");
  EXPECT_EQ(newer.look(areas, 1, "show"), first + "1; " + area_id(2) + interfaces_field + lsas +
                                              "0 " + none + " - -" + runs + "43 - - -");
}

TEST_F(EditionsOnAStore, ANewerOneReadsBeforeAnyWrites) {
  EXPECT_EQ(older.commit(neighbors,
                         {"add ospf_neighbor.neighbor_id 0a000001", "value ospf_neighbor.state 3"}),
            "ok");
  for (Program *program : {&current, &newer}) {
    const std::string shown = program->look(neighbors, 0, "show");
    EXPECT_EQ(shown.find("ospf_neighbor. variant 0; ospf_neighbor.neighbor_id 0 0a000001"), 0u);
    EXPECT_NE(shown.find("ospf_neighbor.state 0 3 "), std::string::npos) << shown;
    EXPECT_NE(shown.find("ospf_neighbor.stats 43 - "), std::string::npos) << shown;
    program->act({"lock read", neighbors, "row 0"});
    EXPECT_EQ(program->ask("compare 0"), "0 same");
    EXPECT_EQ(program->ask("image"), older.look(neighbors, 0, "image"));
    program->act({"unlock"});
  }
}

TEST_F(EditionsOnAStore, ANewerOneAdjustsAnOlderOnesRowByWritingANewerField) {
  EXPECT_EQ(older.commit(areas, {"add ospf_area.area_id 1"}), "ok");
  EXPECT_EQ(newer.commit(areas, {"row 0", "value ospf_area.spf_runs 9",
                                 "refer area_scope_lsas tbl_area_scope_lsas lsas"}),
            "ok");
  EXPECT_EQ(newer.look(areas, 0, "follow area_scope_lsas"), "0");
  EXPECT_EQ(current.look(areas, 0, "follow area_scope_lsas"), "0");
  EXPECT_EQ(older.look(areas, 0, "walk"), "2");
  EXPECT_EQ(older.commit(areas, {"row 0", "value ospf_area.area_id 1"}), "ok");
  EXPECT_NE(newer.look(areas, 0, "show").find("spf_runs 0 9 "), std::string::npos);
}

// Their objects lie side by side.
TEST_F(EditionsOnAStore, ANewerOneHasRoomInEachRowOfManyAndFindsNewerFieldsEmpty) {
  constexpr int count = 40;
  std::vector<std::string> made, adjusted, written;
  for (int id = 0; id < count; ++id) {
    made.push_back("add ospf_area.area_id " + std::to_string(id));
    adjusted.push_back("row " + std::to_string(id));
    written.push_back(adjusted.back());
    adjusted.push_back("value ospf_area.area_id " + std::to_string(id));
    written.push_back("value ospf_area.spf_runs " + std::to_string(1000 + id));
    written.push_back("refer area_scope_lsas tbl_area_scope_lsas lsas");
  }
  EXPECT_EQ(older.commit(areas, made), "ok");
  EXPECT_EQ(newer.commit(areas, adjusted), "ok");
  for (int id = 0; id < count; ++id) {
    const std::string shown = newer.look(areas, id, "show");
    EXPECT_NE(shown.find("area_scope_lsas 0 " + none + " - -; ospf_area.spf_runs 0 0 "),
              std::string::npos)
        << shown;
  }
  EXPECT_EQ(newer.commit(areas, written), "ok");
  for (int id = 0; id < count; ++id) {
    const std::string shown = newer.look(areas, id, "show");
    EXPECT_EQ(shown.find("ospf_area. variant 2; " + area_id(id)), 0u) << shown;
    EXPECT_NE(shown.find("spf_runs 0 " + std::to_string(1000 + id)), std::string::npos) << shown;
    EXPECT_EQ(newer.look(areas, id, "follow area_scope_lsas"), "0");
  }
}

TEST_F(EditionsOnAStore, FieldsOfEveryKindCanBeWrittenIntoAnOlderOnesRow) {
  EXPECT_EQ(older.commit(neighbors,
                         {"add ospf_neighbor.neighbor_id 0a000001", "value ospf_neighbor.state 3"}),
            "ok");
  EXPECT_EQ(newer.commit(neighbors, {"row 0", "value ospf_neighbor.description hello",
                                     "value ospf_neighbor.stats.nbr_event_count 5",
                                     "value ospf_neighbor.stats.nbr_reset_count 6"}),
            "ok");
  const std::string of_newer = newer.look(neighbors, 0, "show");
  EXPECT_NE(of_newer.find("nbr_event_count 0 5 "), std::string::npos) << of_newer;
  EXPECT_NE(of_newer.find("nbr_reset_count 0 6 "), std::string::npos) << of_newer;
  EXPECT_NE(of_newer.find("description 0 'hello' "), std::string::npos) << of_newer;
  const std::string of_current = current.look(neighbors, 0, "show");
  EXPECT_NE(of_current.find("nbr_event_count 0 5 "), std::string::npos) << of_current;
  EXPECT_NE(older.look(neighbors, 0, "show").find("state 0 3 "), std::string::npos);
  EXPECT_EQ(older.commit(neighbors, {"row 0", "value ospf_neighbor.state 4"}), "ok");
  EXPECT_EQ(current.commit(neighbors, {"row 0", "value ospf_neighbor.stats.nbr_event_count 8"}),
            "ok");
  const std::string after = newer.look(neighbors, 0, "show");
  EXPECT_NE(after.find("nbr_event_count 0 8 "), std::string::npos) << after;
  EXPECT_NE(after.find("nbr_reset_count 0 6 "), std::string::npos) << after;
}

TEST_F(EditionsOnAStore, ObjectsCompareAndHashAlikeWhoeverMadeThem) {
  EXPECT_EQ(older.commit(neighbors, {"add ospf_neighbor.neighbor_id 0a000001"}), "ok");
  EXPECT_EQ(newer.commit("table tbl_ospf_neighbor others ospf_neighbor neighbor_id",
                         {"add ospf_neighbor.neighbor_id 0a000001"}),
            "ok");
  newer.act({"lock read", neighbors, "row 0"});
  EXPECT_EQ(newer.ask("compare 0"), "0 same");
  newer.act({"unlock"});
}

TEST_F(EditionsOnAStore, ImagesOfEachOthersRowsAreWrittenAndRead) {
  EXPECT_EQ(older.commit(areas, {"add ospf_area.area_id 1"}), "ok");
  EXPECT_EQ(newer.commit(areas, {"add ospf_area.area_id 2", "value ospf_area.spf_runs 7"}), "ok");
  const std::string others = "table tbl_ospf_area others ospf_area area_id";
  for (Program *program : {&older, &newer}) {
    program->act({"lock write", areas, "row 0"});
    const std::string first = program->ask("image");
    program->act({"row 1"});
    const std::string second = program->ask("image");
    program->act({others, "read " + first, "read " + second, "rollback"});
  }
  newer.act({"lock write", areas, "row 1"});
  const std::string image = newer.ask("image");
  newer.act({"unlock"});
  EXPECT_EQ(older.commit(others, {"read " + image}), "ok");
  EXPECT_NE(newer.look(others, 0, "show").find("area_id 0 2 "), std::string::npos);
}

TEST_F(EditionsOnAStore, EachEndsRowsOfTheOthers) {
  EXPECT_EQ(older.commit(areas, {"add ospf_area.area_id 1", "add ospf_area.area_id 2",
                                 "add ospf_area.area_id 3"}),
            "ok");
  EXPECT_EQ(newer.commit(areas, {"row 2", "value ospf_area.spf_runs 3", "row 0", "end"}), "ok");
  EXPECT_EQ(current.commit(areas, {"row 0", "end"}), "ok");
  EXPECT_EQ(older.commit(areas, {"row 0", "end", "collect"}), "ok");
  older.act({"lock read", areas});
  EXPECT_EQ(older.ask("walk"), "empty");
  older.act({"unlock"});
}

// What the newer fields own would stay behind, owned by nobody.
TEST_F(EditionsOnAStore, AnOlderOneDoesNotEndWhatOwnsThingsThatItDoesNotKnow) {
  EXPECT_EQ(newer.commit(areas, {"add ospf_area.area_id 1",
                                 "refer area_scope_lsas tbl_area_scope_lsas lsas"}),
            "ok");
  EXPECT_EQ(newer.commit(neighbors, {"add ospf_neighbor.neighbor_id 0a000001",
                                     "value ospf_neighbor.description hello"}),
            "ok");
  EXPECT_EQ(older.commit(areas, {"row 0", "end"}),
            "error 43 store '" + file +
                "': an object of type 'ospf_area' was to end, and owns what stands in fields of a "
                "later edition than this program's; the transaction was undone");
  EXPECT_EQ(current.commit(neighbors, {"row 0", "end"}).substr(0, 8), "error 43");
  EXPECT_EQ(newer.look(areas, 0, "follow area_scope_lsas"), "0");
  EXPECT_NE(newer.look(neighbors, 0, "show").find("'hello'"), std::string::npos);
  EXPECT_EQ(current.commit(areas, {"row 0", "end"}), "ok");
  EXPECT_EQ(newer.commit(neighbors, {"row 0", "end"}), "ok");
}

TEST_F(EditionsOnAStore, AnOlderOneDoesNotMoveWhatItDoesNotKnow) {
  EXPECT_EQ(newer.commit(areas, {"add ospf_area.area_id 1", "value ospf_area.spf_runs 7"}), "ok");
  EXPECT_EQ(current.commit(areas, {"add ospf_area.area_id 2"}), "ok");
  const std::string refused = "error 43 store '" + file + "': an object of type 'ospf_area' was ";
  const std::string why =
      ", and has fields of a later edition than this program's; the transaction was undone";
  EXPECT_EQ(current.commit(areas, {"row 1", "move 0"}), refused + "moved into another" + why);
  EXPECT_EQ(current.commit(areas, {"row 0", "move 1"}), refused + "to be overwritten whole" + why);
  EXPECT_EQ(older.commit(areas, {"row 0", "move 1"}), refused + "to be overwritten whole" + why);
  EXPECT_NE(newer.look(areas, 0, "show").find("spf_runs 0 7"), std::string::npos);
  EXPECT_EQ(newer.look(areas, 0, "walk"), "2 1");
  EXPECT_EQ(older.commit(areas,
                         {"add ospf_area.area_id 3", "add ospf_area.area_id 4", "row 3", "move 2"}),
            "ok");
}

// A text lies where objects of the earlier edition have room, and would get two owners.
TEST_F(EditionsOnAStore, AnOlderOneDoesNotMoveATextThatItDoesNotKnow) {
  EXPECT_EQ(newer.commit(neighbors, {"add ospf_neighbor.neighbor_id 0a000001",
                                     "value ospf_neighbor.description hello"}),
            "ok");
  EXPECT_EQ(current.commit(neighbors, {"add ospf_neighbor.neighbor_id 0a000002"}), "ok");
  EXPECT_EQ(current.commit(neighbors, {"row 1", "move 0"}).substr(0, 8), "error 43");
  EXPECT_EQ(current.commit(neighbors, {"row 0", "move 1"}).substr(0, 8), "error 43");
  EXPECT_NE(newer.look(neighbors, 0, "show").find("'hello'"), std::string::npos);
  EXPECT_EQ(newer.commit(neighbors, {"row 1", "move 0"}), "ok");
}

// Objects that embed one that grew have their fields at other places.
TEST_F(EditionsOnAStore, ATypeThatCannotBeSharedIsItsFirstMakersAlone) {
  EXPECT_EQ(current.commit(interfaces, {"add ospf_interface.name eth0"}), "ok");
  for (Program *program : {&older, &newer}) {
    program->act({"lock write"});
    const std::string answer = program->ask(interfaces);
    EXPECT_EQ(answer.substr(0, 8), "error 22") << answer;
    EXPECT_NE(answer.find("type 'ospf_interface' of module 'ospf_harbor_oper': another edition of "
                          "the program came to the store first, with objects of 624 bytes"),
              std::string::npos)
        << answer;
    program->act({"unlock"});
    EXPECT_EQ(program->commit(areas, {"collect"}), "ok");
  }
  EXPECT_EQ(current.commit(interfaces, {"add ospf_interface.name eth1"}), "ok");
  EXPECT_EQ(current.commit(areas, {"add ospf_area.area_id 1",
                                   "refer interfaces tbl_ospf_interface "
                                   "interfaces"}),
            "ok");
  EXPECT_EQ(current.look(areas, 0, "follow interfaces"), "2");
  const std::string answer = newer.look(areas, 0, "follow interfaces");
  EXPECT_EQ(answer.substr(0, 8), "error 22") << answer;
  EXPECT_EQ(newer.commit(areas, {"row 0", "end"}), "ok");
}

TEST_F(EditionsOnAStore, StateIsTrackedByProgramsOfOneEditionAlone) {
  current.act({"lock write tracked", areas, "add ospf_area.area_id 1", "unlock"});
  const std::string refused = older.ask("lock read");
  EXPECT_EQ(refused.substr(0, 8), "error 22") << refused;
  EXPECT_NE(refused.find("objects that track state"), std::string::npos) << refused;
  EXPECT_EQ(older.ask("lock write").substr(0, 8), "error 22");
  current.act({"lock write tracked", areas, "row 0", "value ospf_area.area_id 2", "unlock"});

  Program fresh("newer", file + "2");
  Program other("older", file + "2");
  EXPECT_EQ(fresh.commit(areas, {"add ospf_area.area_id 1"}), "ok");
  const std::string tracking = other.ask("lock write tracked");
  EXPECT_EQ(tracking.substr(0, 8), "error 22") << tracking;
  EXPECT_NE(tracking.find("this handle tracks state"), std::string::npos) << tracking;
  EXPECT_EQ(other.commit(areas, {"add ospf_area.area_id 2"}), "ok");
}

// A newer program's adjust is undone with it, and so is what it told the store of its types.
TEST_F(EditionsOnAStore, AKilledAdjustIsUndone) {
  EXPECT_EQ(older.commit(neighbors, {"add ospf_neighbor.neighbor_id 0a000001"}), "ok");
  const std::string before = older.look(neighbors, 0, "show");
  newer.act({"lock write", neighbors, "row 0", "value ospf_neighbor.description hello",
             "value ospf_neighbor.stats.nbr_reset_count 6"});
  newer.kill();
  EXPECT_EQ(older.look(neighbors, 0, "show"), before);
  EXPECT_EQ(current.commit(neighbors, {"row 0", "value ospf_neighbor.state 1",
                                       "value ospf_neighbor.stats.nbr_event_count 1"}),
            "ok");
  EXPECT_EQ(older.look(neighbors, 0, "walk"), "1");
  Program again("newer", file);
  EXPECT_EQ(again.commit(neighbors, {"row 0", "value ospf_neighbor.description hello"}), "ok");
  again.act(
      {"lock write", neighbors, "row 0", "value ospf_neighbor.description other", "rollback"});
  EXPECT_NE(again.look(neighbors, 0, "show").find("'hello'"), std::string::npos);
}

}  // namespace

}  // namespace evolution
