/* The types of the model: incomplete types for its objects, tables and records, the values
 * of enumerations and the bits of flag sets, the variants in which fields came, and the
 * exported type records.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TYPES_H
#define OSPF_HARBOR_OPER_TYPES_H

#include <kelp/handle.h>
#include <kelp/primitive_layout.h>
#include <kelp/table.h>
#include <kelp/vft.h>

KELP_EXTERN_C_BEGIN

/* A sub-TLV of an opaque LSA in raw form. */
typedef struct ospfv2_unknown_sub_tlv ospfv2_unknown_sub_tlv;
/* The link TLV of traffic engineering. */
typedef struct ospfv2_link_tlv ospfv2_link_tlv;
/* A TLV of an opaque LSA in raw form, with the fields of traffic engineering beside it. */
typedef struct ospfv2_unknown_tlv ospfv2_unknown_tlv;
/* An OSPFv2 external route in one topology. */
typedef struct ospfv2_external ospfv2_external;
/* A metric in one topology. */
typedef struct ospfv2_topology ospfv2_topology;
/* What identifies a link of an OSPFv2 router LSA. */
typedef struct ospfv2_link_key ospfv2_link_key;
/* One link of an OSPFv2 router LSA. */
typedef struct ospfv2_link ospfv2_link;
/* What identifies an LSA of link scope among those of its type. */
typedef struct link_scope_lsa_key link_scope_lsa_key;
/* The OSPFv2 option bits, one boolean each. */
typedef struct lsa_options lsa_options;
/* The bits of an OSPFv2 router LSA, one boolean each. */
typedef struct ospfv2_lsa_body_flags ospfv2_lsa_body_flags;
/* What an OSPFv2 network LSA says. */
typedef struct ospfv2_network ospfv2_network;
/* The body of an OSPFv2 LSA: router, network, summary and external data side by side. */
typedef struct ospfv2_lsa_body ospfv2_lsa_body;
/* The fields that the headers of both protocol versions share by name. */
typedef struct lsa_header lsa_header;
/* The header of an OSPFv2 LSA. */
typedef struct ospfv2_header ospfv2_header;
/* An OSPFv2 LSA: header and body. */
typedef struct ospfv2_lsa ospfv2_lsa;
/* The OSPFv3 option bits, one boolean each. */
typedef struct ospfv3_lsa_options ospfv3_lsa_options;
/* The header of an OSPFv3 LSA. */
typedef struct ospfv3_header ospfv3_header;
/* The bits of an OSPFv3 router LSA, one boolean each. */
typedef struct ospfv3_lsa_body_flags ospfv3_lsa_body_flags;
/* What an OSPFv3 network LSA says. */
typedef struct ospfv3_network ospfv3_network;
/* What an inter-area prefix LSA says. */
typedef struct ospfv3_inter_area_prefix ospfv3_inter_area_prefix;
/* What an inter-area router LSA says. */
typedef struct ospfv3_inter_area_router ospfv3_inter_area_router;
/* The bits of an OSPFv3 AS-external LSA. */
typedef struct ospfv3_lsa_external_flags ospfv3_lsa_external_flags;
/* What an OSPFv3 AS-external LSA says. */
typedef struct ospfv3_lsa_external ospfv3_lsa_external;
/* What an OSPFv3 NSSA LSA says: an external LSA by another name. */
typedef struct ospfv3_nssa ospfv3_nssa;
/* What a link LSA says. */
typedef struct ospfv3_link_data ospfv3_link_data;
/* What an intra-area prefix LSA says. */
typedef struct ospfv3_intra_area_prefix ospfv3_intra_area_prefix;
/* The body of an OSPFv3 LSA: all kinds side by side. */
typedef struct ospfv3_lsa_body ospfv3_lsa_body;
/* An OSPFv3 LSA: header and body. */
typedef struct ospfv3_lsa ospfv3_lsa;
/* What identifies a link of an OSPFv3 router LSA. */
typedef struct ospfv3_link_key ospfv3_link_key;
/* One link of an OSPFv3 router LSA. */
typedef struct ospfv3_link ospfv3_link;
/* A prefix of a link LSA or an intra-area prefix LSA. */
typedef struct ospfv3_prefix_list ospfv3_prefix_list;
/* The name of a topology. */
typedef struct multi_topology multi_topology;
/* An LSA of link scope, as received and in typed form for both protocol versions. */
typedef struct link_scope_lsa link_scope_lsa;
/* What identifies an LSA of area scope among those of its type. */
typedef struct area_scope_lsa_key area_scope_lsa_key;
/* An LSA of area scope, as received and in typed form for both protocol versions. */
typedef struct area_scope_lsa area_scope_lsa;
/* A group of area-scope LSAs. */
typedef struct area_scope_lsas area_scope_lsas;
/* The databases of one LS type. */
typedef struct link_scope_lsas link_scope_lsas;
/* A configured neighbour. */
typedef struct ospf_static_neighbor ospf_static_neighbor;
/* Counters of a neighbour. */
typedef struct ospf_nbr_stat ospf_nbr_stat;
/* A neighbour heard on an interface. */
typedef struct ospf_neighbor ospf_neighbor;
/* Settings of fast reroute. */
typedef struct fast_reroute fast_reroute;
/* Settings of a multi-area adjacency. */
typedef struct multi_area multi_area;
/* Algorithms that may be used; not exclusive of one another. */
typedef struct ospf_crypto_algorithm ospf_crypto_algorithm;
/* How packets are authenticated: a choice whose arms are held by pointer. */
typedef struct ospf_authentication ospf_authentication;
/* Settings of the TTL check. */
typedef struct ttl_security ttl_security;
/* An interface: settings, timers and state. */
typedef struct ospf_interface ospf_interface;
/* An area. */
typedef struct ospf_area ospf_area;
/* A routing process of one address family. */
typedef struct ospf_instance ospf_instance;
/* The root of the model. */
typedef struct ospf ospf;
/* What identifies an instance in the revised form. */
typedef struct ospf_instance_rev1_key ospf_instance_rev1_key;
/* A routing process of one address family and router ID, both of which stand in its key. */
typedef struct ospf_instance_rev1 ospf_instance_rev1;
/* The root of the model, revised form. */
typedef struct ospf_rev1 ospf_rev1;
/* An address family. */
typedef struct address_family address_family;
/* How the address families run beside each other. */
typedef struct ospf_operation_mode ospf_operation_mode;
/* How OSPF treats a network. */
typedef struct ospf_network_type ospf_network_type;
/* Selector of ospf_authentication. */
typedef struct ospf_auth_type ospf_auth_type;
/* State of the conversation with a neighbour. Held values run from 1 to 8; the wire and the limits count from 0. */
typedef struct nbr_state_type nbr_state_type;
/* The OSPFv2 option bits. */
typedef struct lsa_flag_options lsa_flag_options;
/* The bits of an OSPFv2 router LSA. The members' prefix is spelt as the schema spells it. */
typedef struct ospfv2_lsa_body_flags_options ospfv2_lsa_body_flags_options;
/* The OSPFv3 option bits. */
typedef struct ospfv3_lsa_flag_options ospfv3_lsa_flag_options;
/* The bits of an OSPFv3 router LSA. */
typedef struct ospfv3_lsa_body_flag_options ospfv3_lsa_body_flag_options;

/* Tables and their records. */
typedef struct tbl_ospfv2_unknown_sub_tlv_table tbl_ospfv2_unknown_sub_tlv_table;
typedef struct tbl_ospfv2_unknown_sub_tlv_record tbl_ospfv2_unknown_sub_tlv_record;
typedef struct tbl_ospfv2_unknown_tlv_table tbl_ospfv2_unknown_tlv_table;
typedef struct tbl_ospfv2_unknown_tlv_record tbl_ospfv2_unknown_tlv_record;
typedef struct tbl_ospfv2_external_table tbl_ospfv2_external_table;
typedef struct tbl_ospfv2_external_record tbl_ospfv2_external_record;
typedef struct tbl_ospfv2_topology_table tbl_ospfv2_topology_table;
typedef struct tbl_ospfv2_topology_record tbl_ospfv2_topology_record;
typedef struct tbl_ospfv2_link_table tbl_ospfv2_link_table;
typedef struct tbl_ospfv2_link_record tbl_ospfv2_link_record;
typedef struct tbl_ospfv3_link_table tbl_ospfv3_link_table;
typedef struct tbl_ospfv3_link_record tbl_ospfv3_link_record;
typedef struct tbl_ospfv3_prefix_list_table tbl_ospfv3_prefix_list_table;
typedef struct tbl_ospfv3_prefix_list_record tbl_ospfv3_prefix_list_record;
typedef struct tbl_ospfv3_ia_prefix_list_table tbl_ospfv3_ia_prefix_list_table;
typedef struct tbl_ospfv3_ia_prefix_list_record tbl_ospfv3_ia_prefix_list_record;
typedef struct tbl_multi_topology_table tbl_multi_topology_table;
typedef struct tbl_multi_topology_record tbl_multi_topology_record;
typedef struct tbl_link_scope_lsa_table tbl_link_scope_lsa_table;
typedef struct tbl_link_scope_lsa_record tbl_link_scope_lsa_record;
typedef struct tbl_area_scope_lsa_table tbl_area_scope_lsa_table;
typedef struct tbl_area_scope_lsa_record tbl_area_scope_lsa_record;
typedef struct tbl_area_scope_lsas_table tbl_area_scope_lsas_table;
typedef struct tbl_area_scope_lsas_record tbl_area_scope_lsas_record;
typedef struct tbl_link_scope_lsas_table tbl_link_scope_lsas_table;
typedef struct tbl_link_scope_lsas_record tbl_link_scope_lsas_record;
typedef struct tbl_ospf_static_neighbor_table tbl_ospf_static_neighbor_table;
typedef struct tbl_ospf_static_neighbor_record tbl_ospf_static_neighbor_record;
typedef struct tbl_ospf_neighbor_table tbl_ospf_neighbor_table;
typedef struct tbl_ospf_neighbor_record tbl_ospf_neighbor_record;
typedef struct tbl_ospf_interface_table tbl_ospf_interface_table;
typedef struct tbl_ospf_interface_record tbl_ospf_interface_record;
typedef struct tbl_ospf_area_table tbl_ospf_area_table;
typedef struct tbl_ospf_area_record tbl_ospf_area_record;
typedef struct tbl_ospf_instance_table tbl_ospf_instance_table;
typedef struct tbl_ospf_instance_record tbl_ospf_instance_record;
typedef struct tbl_ospf_table tbl_ospf_table;
typedef struct tbl_ospf_record tbl_ospf_record;
typedef struct tbl_ospf_instance_rev1_table tbl_ospf_instance_rev1_table;
typedef struct tbl_ospf_instance_rev1_record tbl_ospf_instance_rev1_record;
typedef struct tbl_ospf_rev1_table tbl_ospf_rev1_table;
typedef struct tbl_ospf_rev1_record tbl_ospf_rev1_record;

/* Called by a walk with each record, a <table>_record, and the walk's argument; a non-zero
 * result ends the walk. */
typedef uint32_t (*ospf_harbor_oper_record_callback)(void *record, void *argument);

/* Values of address_family. */
enum address_family_value {
  ADDR_FAMILY_IPV4 = 0, /* IPv4. */
  ADDR_FAMILY_IPV6 = 1 /* IPv6. */
};

/* Values of ospf_operation_mode. */
enum ospf_operation_mode_value {
  OSPF_OP_MODE_SHIPS_IN_THE_NIGHT = 0 /* The address families know nothing of each other. */
};

/* Values of ospf_network_type. */
enum ospf_network_type_value {
  BROADCAST = 0, /* Many routers, reached by one packet to all. */
  NON_BROADCAST = 1, /* Many routers, each reached by a packet of its own. */
  POINT_TO_MULTIPOINT = 2, /* A set of point-to-point links. */
  POINT_TO_POINT = 3 /* Two routers. */
};

/* Values of ospf_auth_type. */
enum ospf_auth_type_value {
  OSPF_AUTH_IPSEC = 0, /* IPsec; the arm is sa. */
  OSPF_AUTH_TRAILER_KEY_CHAIN = 1, /* Authentication trailer with a key chain; the arm is key_chain. */
  OSPF_AUTH_TRAILER_KEY = 2, /* Authentication trailer with a key; the arms are key_string and crypto_algorithm_val. */
  OSPF_AUTH_TYPE_NONE = 3 /* No authentication; the arm is no_auth. Known from variant 1 on. */
};

/* Values of nbr_state_type. */
enum nbr_state_type_value {
  NBR_STATE_DOWN = 1, /* Nothing heard. */
  NBR_STATE_ATTEMPT = 2, /* Hellos are sent to a configured neighbour that is silent. */
  NBR_STATE_INIT = 3, /* A hello was heard that does not name this router. */
  NBR_STATE_TWO_WAY = 4, /* Both routers hear each other. */
  NBR_STATE_EXSTART = 5, /* The routers settle who leads the exchange. */
  NBR_STATE_EXCHANGE = 6, /* The routers describe their databases. */
  NBR_STATE_LOADING = 7, /* Missing LSAs are being asked for. */
  NBR_STATE_FULL = 8 /* The databases agree. */
};

/* Bit numbers of lsa_flag_options; bit n has the mask 1 << n. */
enum lsa_flag_options_bit {
  LSA_FLAG_OPTIONS_DC = 0, /* Demand circuits are handled. */
  LSA_FLAG_OPTIONS_P = 1, /* A type 7 LSA is to be translated. */
  LSA_FLAG_OPTIONS_MC = 2, /* Multicast datagrams are forwarded. */
  LSA_FLAG_OPTIONS_E = 3, /* AS-external LSAs are accepted. */
  LSA_FLAG_OPTIONS_UPWARD = 4, /* The up bit of the options. */
  LSA_FLAG_OPTIONS_MT = 5, /* Multi-topology routing is in use. */
  LSA_FLAG_OPTIONS_R = 6, /* The originator forwards traffic. */
  LSA_FLAG_OPTIONS_AF = 7 /* Address families are supported. */
};

/* Bit numbers of ospfv2_lsa_body_flags_options; bit n has the mask 1 << n. */
enum ospfv2_lsa_body_flags_options_bit {
  OSPV2_LSA_BODY_FLAG_OPTIONS_V = 0, /* The router is an endpoint of a virtual link. */
  OSPV2_LSA_BODY_FLAG_OPTIONS_E = 1, /* The router is an AS boundary router. */
  OSPV2_LSA_BODY_FLAG_OPTIONS_B = 2 /* The router is an area border router. */
};

/* Bit numbers of ospfv3_lsa_flag_options; bit n has the mask 1 << n. */
enum ospfv3_lsa_flag_options_bit {
  OSPFV3_LSA_FLAG_DC = 0, /* Demand circuits are handled. */
  OSPFV3_LSA_FLAG_R = 1, /* The originator forwards traffic. */
  OSPFV3_LSA_FLAG_N = 2, /* Type 7 LSAs are handled. */
  OSPFV3_LSA_FLAG_E = 3, /* AS-external LSAs are accepted. */
  OSPFV3_LSA_FLAG_V6 = 4, /* The router takes part in IPv6 routing. */
  OSPFV3_LSA_FLAG_AF = 5 /* Address families are supported. */
};

/* Bit numbers of ospfv3_lsa_body_flag_options; bit n has the mask 1 << n. */
enum ospfv3_lsa_body_flag_options_bit {
  OSPFV3_LSA_BODY_FLAG_OPTIONS_V = 0, /* The router is an endpoint of a virtual link. */
  OSPFV3_LSA_BODY_FLAG_OPTIONS_E = 1, /* The router is an AS boundary router. */
  OSPFV3_LSA_BODY_FLAG_OPTIONS_B = 2, /* The router is an area border router. */
  OSPFV3_LSA_BODY_FLAG_OPTIONS_NT = 3 /* The router translates type 7 LSAs whatever others do. */
};

/* The highest variant of each type, and the variant in which a later field came. */
#define OSPFV2_UNKNOWN_SUB_TLV_HIGHEST_VARIANT 0
#define OSPFV2_LINK_TLV_HIGHEST_VARIANT 0
#define OSPFV2_UNKNOWN_TLV_HIGHEST_VARIANT 0
#define OSPFV2_EXTERNAL_HIGHEST_VARIANT 0
#define OSPFV2_TOPOLOGY_HIGHEST_VARIANT 0
#define OSPFV2_LINK_KEY_HIGHEST_VARIANT 0
#define OSPFV2_LINK_HIGHEST_VARIANT 0
#define LINK_SCOPE_LSA_KEY_HIGHEST_VARIANT 0
#define LSA_OPTIONS_HIGHEST_VARIANT 0
#define OSPFV2_LSA_BODY_FLAGS_HIGHEST_VARIANT 0
#define OSPFV2_NETWORK_HIGHEST_VARIANT 0
#define OSPFV2_LSA_BODY_HIGHEST_VARIANT 1
#define OSPFV2_LSA_BODY_BODY_FLAG_OPTIONS_SINCE 1
#define LSA_HEADER_HIGHEST_VARIANT 0
#define OSPFV2_HEADER_HIGHEST_VARIANT 1
#define OSPFV2_HEADER_FLAG_OPTIONS_SINCE 1
#define OSPFV2_LSA_HIGHEST_VARIANT 0
#define OSPFV3_LSA_OPTIONS_HIGHEST_VARIANT 0
#define OSPFV3_HEADER_HIGHEST_VARIANT 1
#define OSPFV3_HEADER_LSA_FLAG_HDR_OPTIONS_SINCE 1
#define OSPFV3_LSA_BODY_FLAGS_HIGHEST_VARIANT 0
#define OSPFV3_NETWORK_HIGHEST_VARIANT 1
#define OSPFV3_NETWORK_LSA_FLAG_HDR_OPTIONS_SINCE 1
#define OSPFV3_INTER_AREA_PREFIX_HIGHEST_VARIANT 0
#define OSPFV3_INTER_AREA_ROUTER_HIGHEST_VARIANT 1
#define OSPFV3_INTER_AREA_ROUTER_LSA_FLAG_HDR_OPTIONS_SINCE 1
#define OSPFV3_LSA_EXTERNAL_FLAGS_HIGHEST_VARIANT 0
#define OSPFV3_LSA_EXTERNAL_HIGHEST_VARIANT 0
#define OSPFV3_NSSA_HIGHEST_VARIANT 0
#define OSPFV3_LINK_DATA_HIGHEST_VARIANT 1
#define OSPFV3_LINK_DATA_LSA_FLAG_HDR_OPTIONS_SINCE 1
#define OSPFV3_INTRA_AREA_PREFIX_HIGHEST_VARIANT 0
#define OSPFV3_LSA_BODY_HIGHEST_VARIANT 1
#define OSPFV3_LSA_BODY_LSA_FLAG_OPTIONS_SINCE 1
#define OSPFV3_LSA_BODY_LSA_BODY_FLAGS_SINCE 1
#define OSPFV3_LSA_HIGHEST_VARIANT 0
#define OSPFV3_LINK_KEY_HIGHEST_VARIANT 0
#define OSPFV3_LINK_HIGHEST_VARIANT 0
#define OSPFV3_PREFIX_LIST_HIGHEST_VARIANT 0
#define MULTI_TOPOLOGY_HIGHEST_VARIANT 0
#define LINK_SCOPE_LSA_HIGHEST_VARIANT 1
#define LINK_SCOPE_LSA_ROUTER_ADDRESS_SINCE 1
#define LINK_SCOPE_LSA_TLV_SINCE 1
#define LINK_SCOPE_LSA_UNKNOWN_SUB_TLV_SINCE 1
#define AREA_SCOPE_LSA_KEY_HIGHEST_VARIANT 0
#define AREA_SCOPE_LSA_HIGHEST_VARIANT 0
#define AREA_SCOPE_LSAS_HIGHEST_VARIANT 0
#define LINK_SCOPE_LSAS_HIGHEST_VARIANT 0
#define OSPF_STATIC_NEIGHBOR_HIGHEST_VARIANT 0
#define OSPF_NBR_STAT_HIGHEST_VARIANT 0
#define OSPF_NEIGHBOR_HIGHEST_VARIANT 1
#define OSPF_NEIGHBOR_STATS_SINCE 1
#define FAST_REROUTE_HIGHEST_VARIANT 0
#define MULTI_AREA_HIGHEST_VARIANT 0
#define OSPF_CRYPTO_ALGORITHM_HIGHEST_VARIANT 0
#define OSPF_AUTHENTICATION_HIGHEST_VARIANT 1
#define OSPF_AUTHENTICATION_NO_AUTH_SINCE 1
#define TTL_SECURITY_HIGHEST_VARIANT 0
#define OSPF_INTERFACE_HIGHEST_VARIANT 1
#define OSPF_INTERFACE_PRIORITY_SINCE 1
#define OSPF_AREA_HIGHEST_VARIANT 1
#define OSPF_AREA_AREA_SCOPE_LSAS_SINCE 1
#define OSPF_INSTANCE_HIGHEST_VARIANT 0
#define OSPF_HIGHEST_VARIANT 0
#define OSPF_INSTANCE_REV1_KEY_HIGHEST_VARIANT 0
#define OSPF_INSTANCE_REV1_HIGHEST_VARIANT 0
#define OSPF_REV1_HIGHEST_VARIANT 0
#define ADDRESS_FAMILY_HIGHEST_VARIANT 0
#define OSPF_OPERATION_MODE_HIGHEST_VARIANT 0
#define OSPF_NETWORK_TYPE_HIGHEST_VARIANT 0
#define OSPF_AUTH_TYPE_HIGHEST_VARIANT 1
#define NBR_STATE_TYPE_HIGHEST_VARIANT 0
#define LSA_FLAG_OPTIONS_HIGHEST_VARIANT 0
#define OSPFV2_LSA_BODY_FLAGS_OPTIONS_HIGHEST_VARIANT 0
#define OSPFV3_LSA_FLAG_OPTIONS_HIGHEST_VARIANT 0
#define OSPFV3_LSA_BODY_FLAG_OPTIONS_HIGHEST_VARIANT 0

/* The type records. Objects point at these, or at the runtime's copies. */
extern KELP_API kelp_type_record _ospfv2_unknown_sub_tlv_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_link_tlv_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_unknown_tlv_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_external_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_topology_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_link_key_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_link_type_info_internal;
extern KELP_API kelp_type_record _link_scope_lsa_key_type_info_internal;
extern KELP_API kelp_type_record _lsa_options_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_lsa_body_flags_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_network_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_lsa_body_type_info_internal;
extern KELP_API kelp_type_record _lsa_header_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_header_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_lsa_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_options_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_header_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_body_flags_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_network_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_inter_area_prefix_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_inter_area_router_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_external_flags_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_external_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_nssa_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_link_data_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_intra_area_prefix_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_body_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_link_key_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_link_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_prefix_list_type_info_internal;
extern KELP_API kelp_type_record _multi_topology_type_info_internal;
extern KELP_API kelp_type_record _link_scope_lsa_type_info_internal;
extern KELP_API kelp_type_record _area_scope_lsa_key_type_info_internal;
extern KELP_API kelp_type_record _area_scope_lsa_type_info_internal;
extern KELP_API kelp_type_record _area_scope_lsas_type_info_internal;
extern KELP_API kelp_type_record _link_scope_lsas_type_info_internal;
extern KELP_API kelp_type_record _ospf_static_neighbor_type_info_internal;
extern KELP_API kelp_type_record _ospf_nbr_stat_type_info_internal;
extern KELP_API kelp_type_record _ospf_neighbor_type_info_internal;
extern KELP_API kelp_type_record _fast_reroute_type_info_internal;
extern KELP_API kelp_type_record _multi_area_type_info_internal;
extern KELP_API kelp_type_record _ospf_crypto_algorithm_type_info_internal;
extern KELP_API kelp_type_record _ospf_authentication_type_info_internal;
extern KELP_API kelp_type_record _ttl_security_type_info_internal;
extern KELP_API kelp_type_record _ospf_interface_type_info_internal;
extern KELP_API kelp_type_record _ospf_area_type_info_internal;
extern KELP_API kelp_type_record _ospf_instance_type_info_internal;
extern KELP_API kelp_type_record _ospf_type_info_internal;
extern KELP_API kelp_type_record _ospf_instance_rev1_key_type_info_internal;
extern KELP_API kelp_type_record _ospf_instance_rev1_type_info_internal;
extern KELP_API kelp_type_record _ospf_rev1_type_info_internal;
extern KELP_API kelp_type_record _address_family_type_info_internal;
extern KELP_API kelp_type_record _ospf_operation_mode_type_info_internal;
extern KELP_API kelp_type_record _ospf_network_type_type_info_internal;
extern KELP_API kelp_type_record _ospf_auth_type_type_info_internal;
extern KELP_API kelp_type_record _nbr_state_type_type_info_internal;
extern KELP_API kelp_type_record _lsa_flag_options_type_info_internal;
extern KELP_API kelp_type_record _ospfv2_lsa_body_flags_options_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_flag_options_type_info_internal;
extern KELP_API kelp_type_record _ospfv3_lsa_body_flag_options_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_unknown_sub_tlv_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_unknown_sub_tlv_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_unknown_tlv_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_unknown_tlv_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_external_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_external_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_topology_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_topology_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_link_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv2_link_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv3_link_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv3_link_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv3_prefix_list_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv3_prefix_list_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv3_ia_prefix_list_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospfv3_ia_prefix_list_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_multi_topology_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_multi_topology_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_link_scope_lsa_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_link_scope_lsa_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_area_scope_lsa_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_area_scope_lsa_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_area_scope_lsas_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_area_scope_lsas_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_link_scope_lsas_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_link_scope_lsas_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_static_neighbor_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_static_neighbor_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_neighbor_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_neighbor_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_interface_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_interface_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_area_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_area_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_instance_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_instance_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_instance_rev1_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_instance_rev1_table_record_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_rev1_table_type_info_internal;
extern KELP_API kelp_type_record _tbl_ospf_rev1_table_record_type_info_internal;

KELP_EXTERN_C_END

#endif
