// An interface on its way between two programs that know different variants of its type: written as
// an image, checked, read, and read again where the writer is of an earlier variant.
#include <iostream>
#include <ospf_harbor.hpp>
#include <ospf_harbor/receive.hpp>

// What a writer sends: a handle may be told to write an earlier variant of a type, for peers that
// know no other.
std::vector<std::byte> image_of_interface(int variant) {
  ospf_harbor::database database("writer");
  ospf_harbor::session session(database);
  kelp_error error{};
  if (kelp_handle_set_variant(session.handle(), "ospf_interface", variant, &error) != 0) {
    throw ospf_harbor::failure(error);
  }
  ospf_harbor::interface sent(session);
  sent.set_name("core");
  sent.set_cost(10);
  sent.authentication_val().select_no_auth(0);
  if (variant >= 1) sent.set_priority(50);
  return sent.to_image();
}

// What a reader makes of it: what is not sound is refused with its place, before anything is read.
void show_received(ospf_harbor::session &session, std::span<const std::byte> image) {
  const auto received = ospf_harbor::receive<ospf_harbor::interface_ref>(session, image);
  std::cout << received.name() << " of cost " << received.cost();
  try {
    const int priority = received.priority();
    std::cout << ", priority " << priority << "\n";
  } catch (const ospf_harbor::failure &why) {
    std::cout << "; " << why.what() << "\n";  // the writer's variant has no priority
  }
}

int main() try {
  ospf_harbor::database database("reader");
  {
    ospf_harbor::session session(database);
    std::vector<std::byte> image = image_of_interface(1);
    show_received(session, image);
    show_received(session, image_of_interface(0));
    image.resize(image.size() - 1);
    try {
      show_received(session, image);
    } catch (const ospf_harbor::failure &why) {
      std::cout << "refused: " << why.what() << "\n";
    }
  }
  const std::string left = database.close();
  std::cerr << left;
  return left.empty() ? 0 : 1;
} catch (const ospf_harbor::failure &why) {
  std::cerr << why.what() << "\n";
  return 1;
}
