#include "support/random_tree.hpp"

#include <random>

#include "model/lists.hpp"
#include "ospf_tables/rows.hpp"
#include "ospf_tables/tree.hpp"
#include "support/objects.hpp"

namespace tree_exchange_tests {

namespace {

using harbor::model::Structure;

const Structure &structure_of(void *object) {
  const std::string name = encodings::header(object).tinfo->type_name;
  for (const Structure *structure : harbor::model::structures) {
    if (structure->name == name) return *structure;
  }
  ADD_FAILURE() << "no structure " << name;
  std::abort();
}

class Maker {
 public:
  Maker(ospf_tables::Session &session, const TreeShape &shape)
      : session_(session),
        shape_(shape),
        random_(shape.seed),
        filler_(session.handle(), shape.seed) {}

  std::map<std::string, std::size_t> make() {
    row<ospf_tables::ospf_rev1_ops>(ospf_tables::root_table(session_, true));
    return counts_;
  }

 private:
  bool one_in(std::uint32_t n) { return random_() % n == 0; }

  void fill(void *object) {
    const Structure &type = structure_of(object);
    filler_.fill(object, type);
    settle(object, type);
  }

  // Random OIDs name no table; and without mixed variants all are plain.
  void settle(void *object, const Structure &type) {
    for (const harbor::model::Field *field : type.fields) {
      auto *place = static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field);
      if (field->kind == harbor::model::Kind::reference) {
        reinterpret_cast<kelp_reference *>(place)->oid = kelp_oid{};
      } else if (field->kind == harbor::model::Kind::structure) {
        settle(place, *field->structure);
      } else if (field->kind == harbor::model::Kind::arm &&
                 field->held == harbor::model::Kind::structure) {
        void *arm = *reinterpret_cast<void **>(place);
        if (arm != nullptr) settle(arm, *field->structure);
      }
    }
    if (shape_.mixed_variants) return;
    encodings::header(object).variant = static_cast<std::int8_t>(type.variants - 1);
    encodings::header(object).obj_flags &= static_cast<std::uint8_t>(~OBJ_RA_DATA);
  }

  template <typename Ops>
  void row(typename Ops::Table *table) {
    ospf_tables::NewRecord<Ops> record(session_);
    ospf_tables::NewObject<Ops> made(session_);
    auto *object = record.put(made);
    fill(object);
    if constexpr (ospf_tables::has_key_object<Ops>) {
      ospf_tables::NewKey<Ops> key(session_);
      fill(static_cast<typename Ops::Key *>(key));
      record.put_key(key);
    }
    std::uint32_t err = 0;
    Ops::insert(session_.handle(), ospf_tables::space, table, record.get(), &err);
    if (err != 0) return;  // the key is there already
    record.is_in_a_table();
    ++counts_[Ops::name];
    ospf_tables::for_each_reference<Ops>([&]<typename Reference>(const Reference &reference) {
      if (one_in(8) || !ospf_tables::has_reference(session_, reference, object)) return;
      ospf_tables::NewTable<typename Reference::Child> below(session_);
      reference.set(session_.handle(), ospf_tables::space, object, below, session_.err());
      session_.check(reference.name);
      typename Reference::Table *filled = below;
      below.is_referred_to();
      for (std::uint32_t rows = random_() % (shape_.most_rows + 1); rows > 0; --rows) {
        row<typename Reference::Child>(filled);
      }
    });
  }

  ospf_tables::Session &session_;
  const TreeShape &shape_;
  std::mt19937 random_;
  encodings::Filler filler_;
  std::map<std::string, std::size_t> counts_;
};

struct Texts : ospf_tables::TreeVisitor {
  bool enter(const ospf_tables::RowView &row) override {
    all += std::string(row.kind) + ' ' + row.path + '\n' + row.text() + '\n';
    return true;
  }
  void leave() override {}

  std::string all;
};

}  // namespace

std::map<std::string, std::size_t> make_random_tree(ospf_tables::Session &session,
                                                    const TreeShape &shape) {
  constexpr std::uint32_t next_seed = 1000;
  for (TreeShape now = shape;; now.seed += next_seed) {
    auto counts = Maker(session, now).make();
    std::size_t rows = 0;
    for (const auto &[table, count] : counts) rows += count;
    if (rows >= shape.least_rows) return counts;
    ospf_tables::clear_tree(session);
  }
}

std::string text_of(ospf_tables::Session &session) {
  Texts texts;
  ospf_tables::walk_tree(session, texts);
  return texts.all;
}

}  // namespace tree_exchange_tests
