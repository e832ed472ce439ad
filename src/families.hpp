// Every family of operations, for those who cross families with the schema: the emitter and the
// whole-schema tests. The order is the order in the public headers.
#pragma once

#include "encodings/clone.hpp"
#include "encodings/image.hpp"
#include "encodings/light_encodings.hpp"
#include "encodings/text.hpp"
#include "encodings/xml.hpp"
#include "module/module.hpp"
#include "tables/handlers.hpp"
#include "tables/insertion.hpp"
#include "tables/open.hpp"
#include "tables/order.hpp"
#include "tables/ospf_harbor_oper_table.hpp"
#include "tables/record.hpp"
#include "tables/record_encodings.hpp"
#include "tables/record_fields.hpp"
#include "tables/traversal.hpp"
#include "types/array_field.hpp"
#include "types/choice.hpp"
#include "types/enumeration.hpp"
#include "types/flag_set.hpp"
#include "types/light_object.hpp"
#include "types/object_field.hpp"
#include "types/reference_field.hpp"
#include "types/state_tracking.hpp"
#include "types/structure_life.hpp"
#include "types/structure_values.hpp"
#include "types/transfer.hpp"
#include "types/value_field.hpp"

namespace harbor {

inline constexpr std::array module_families{
    module_frame::family,
    vft::module_family,
};

inline constexpr std::array enumeration_families{
    light_object::family,
    enumeration::family,
    enumeration_encodings::family,
};

inline constexpr std::array flag_set_families{
    light_object::family,
    flag_set::family,
    flag_set_encodings::family,
};

inline constexpr std::array structure_families{
    structure_life::family,
    structure_values::family,
    transfer::family,
    reference_field::whole_family,
    state_tracking::whole_family,
    image::family,
    text::family,
    xml::family,
    clone::family,
};

inline constexpr std::array field_families{
    value_field::family,        value_field::counter_family, object_field::family,
    array_field::number_family, array_field::address_family, reference_field::family,
    choice::arm_family,         state_tracking::family,      state_tracking::array_family,
};

inline constexpr std::array table_families{
    vft::family,           open::family,
    record::family,        order::key_family,
    order::family,         traversal::key_family,
    traversal::family,     insertion::family,
    handlers::family,      record_fields::object_family,
    record_fields::family, record_encodings::family,
};

}  // namespace harbor
