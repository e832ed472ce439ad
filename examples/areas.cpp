// The tree of two_areas.c in C++: two areas with an interface each; walked, and ended by their
// owner.
#include <iostream>
#include <ospf_harbor.hpp>

int main() try {
  ospf_harbor::database database("example");
  {
    ospf_harbor::session session(database);
    ospf_harbor::area_tree areas(session);
    areas.add(0)->add_interface("core")->set_cost(10);
    areas.add(51)->add_interface("branch")->set_cost(100);

    for (const auto area : areas) {
      std::cout << "area " << area->area_id() << ": " << area->interfaces().size() << " interface";
      for (const auto interface : area->interfaces()) {
        std::cout << ", " << interface->name() << " of cost " << interface->cost()
                  << " with an image of " << interface.to_image().size() << " bytes";
      }
      std::cout << "\n";
    }
    if (!areas.find(51)) std::cerr << "area 51 is missing\n";
    try {
      areas.add(51);
    } catch (const ospf_harbor::failure &why) {
      std::cout << "not twice: " << why.what() << "\n";
    }
  }
  const std::string left = database.close();
  std::cerr << left;
  return left.empty() ? 0 : 1;
} catch (const ospf_harbor::failure &why) {
  std::cerr << why.what() << "\n";
  return 1;
}
