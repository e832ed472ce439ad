// Memory that the parts of a database keep their things in: private, or a store's, where each
// change is announced first so that it can be undone.
#pragma once

#include <cstddef>

namespace kelp::store {

class Memory {
 public:
  // Null without memory. Aligned to 16.
  virtual void *take(std::size_t size) = 0;
  virtual void give_back(void *block) = 0;
  // Bytes about to be changed.
  void touch(const void *address, std::size_t length) {
    if (hears_) hear(address, length);
  }

  template <typename Word>
  void set(Word &word, Word value) {
    touch(&word, sizeof word);
    word = value;
  }

 protected:
  // hears: whether hear is to be called.
  explicit Memory(bool hears) : hears_(hears) {}
  ~Memory() = default;
  virtual void hear(const void *address, std::size_t length) = 0;

 private:
  bool hears_;
};

}  // namespace kelp::store
