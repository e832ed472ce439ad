# The classes of the model. Written by the emitter from the schema; `make emit` renews it.
from ipaddress import (IPv4Address, IPv4Interface, IPv4Network, IPv6Address, IPv6Interface,
                       IPv6Network)
from typing import Any, Iterable, Iterator, Mapping, Union

from ._objects import Structure
from ._row import Row
from ._tables import Table
from ._values import Enumeration, Flags

Address = Union[IPv4Address, IPv6Address, IPv4Interface, IPv6Interface]
AddressLike = Union[Address, IPv4Network, IPv6Network, str, None]
Number = Union[int, str, IPv4Address]


class AddressFamily(Enumeration):
    """An address family."""
    ADDR_FAMILY_IPV4 = 0  # IPv4.
    ADDR_FAMILY_IPV6 = 1  # IPv6.


class OspfOperationMode(Enumeration):
    """How the address families run beside each other."""
    OSPF_OP_MODE_SHIPS_IN_THE_NIGHT = 0  # The address families know nothing of each other.


class OspfNetworkType(Enumeration):
    """How OSPF treats a network."""
    BROADCAST = 0  # Many routers, reached by one packet to all.
    NON_BROADCAST = 1  # Many routers, each reached by a packet of its own.
    POINT_TO_MULTIPOINT = 2  # A set of point-to-point links.
    POINT_TO_POINT = 3  # Two routers.


class OspfAuthType(Enumeration):
    """Selector of ospf_authentication."""
    OSPF_AUTH_IPSEC = 0  # IPsec; the arm is sa.
    OSPF_AUTH_TRAILER_KEY_CHAIN = 1  # Authentication trailer with a key chain; the arm is key_chain.
    OSPF_AUTH_TRAILER_KEY = 2  # Authentication trailer with a key; the arms are key_string and crypto_algorithm_val.
    OSPF_AUTH_TYPE_NONE = 3  # No authentication; the arm is no_auth. Known from variant 1 on.


class NbrStateType(Enumeration):
    """State of the conversation with a neighbour. Held values run from 1 to 8; the wire and the limits count from 0."""
    NBR_STATE_DOWN = 1  # Nothing heard.
    NBR_STATE_ATTEMPT = 2  # Hellos are sent to a configured neighbour that is silent.
    NBR_STATE_INIT = 3  # A hello was heard that does not name this router.
    NBR_STATE_TWO_WAY = 4  # Both routers hear each other.
    NBR_STATE_EXSTART = 5  # The routers settle who leads the exchange.
    NBR_STATE_EXCHANGE = 6  # The routers describe their databases.
    NBR_STATE_LOADING = 7  # Missing LSAs are being asked for.
    NBR_STATE_FULL = 8  # The databases agree.


class LsaFlagOptions(Flags):
    """The OSPFv2 option bits."""
    LSA_FLAG_OPTIONS_DC = 1  # Demand circuits are handled.
    LSA_FLAG_OPTIONS_P = 2  # A type 7 LSA is to be translated.
    LSA_FLAG_OPTIONS_MC = 4  # Multicast datagrams are forwarded.
    LSA_FLAG_OPTIONS_E = 8  # AS-external LSAs are accepted.
    LSA_FLAG_OPTIONS_UPWARD = 16  # The up bit of the options.
    LSA_FLAG_OPTIONS_MT = 32  # Multi-topology routing is in use.
    LSA_FLAG_OPTIONS_R = 64  # The originator forwards traffic.
    LSA_FLAG_OPTIONS_AF = 128  # Address families are supported.


class Ospfv2LsaBodyFlagsOptions(Flags):
    """The bits of an OSPFv2 router LSA. The members' prefix is spelt as the schema spells it."""
    OSPV2_LSA_BODY_FLAG_OPTIONS_V = 1  # The router is an endpoint of a virtual link.
    OSPV2_LSA_BODY_FLAG_OPTIONS_E = 2  # The router is an AS boundary router.
    OSPV2_LSA_BODY_FLAG_OPTIONS_B = 4  # The router is an area border router.


class Ospfv3LsaFlagOptions(Flags):
    """The OSPFv3 option bits."""
    OSPFV3_LSA_FLAG_DC = 1  # Demand circuits are handled.
    OSPFV3_LSA_FLAG_R = 2  # The originator forwards traffic.
    OSPFV3_LSA_FLAG_N = 4  # Type 7 LSAs are handled.
    OSPFV3_LSA_FLAG_E = 8  # AS-external LSAs are accepted.
    OSPFV3_LSA_FLAG_V6 = 16  # The router takes part in IPv6 routing.
    OSPFV3_LSA_FLAG_AF = 32  # Address families are supported.


class Ospfv3LsaBodyFlagOptions(Flags):
    """The bits of an OSPFv3 router LSA."""
    OSPFV3_LSA_BODY_FLAG_OPTIONS_V = 1  # The router is an endpoint of a virtual link.
    OSPFV3_LSA_BODY_FLAG_OPTIONS_E = 2  # The router is an AS boundary router.
    OSPFV3_LSA_BODY_FLAG_OPTIONS_B = 4  # The router is an area border router.
    OSPFV3_LSA_BODY_FLAG_OPTIONS_NT = 8  # The router translates type 7 LSAs whatever others do.


class Ospfv2UnknownSubTlv(Structure):
    """A sub-TLV of an opaque LSA in raw form."""
    @property
    def type(self) -> int:
        """The sub-TLV's type."""
    @type.setter
    def type(self, value: int) -> None: ...
    @property
    def length(self) -> int:
        """The sub-TLV's length in octets as advertised, whatever value_len says."""
    @length.setter
    def length(self, value: int) -> None: ...
    @property
    def value_len(self) -> int:
        """Number of octets in value."""
    @property
    def value(self) -> bytes:
        """The sub-TLV's octets."""
    @value.setter
    def value(self, value: bytes | bytearray | str | Iterable[int]) -> None: ...


class Ospfv2LinkTlv(Structure):
    """The link TLV of traffic engineering."""
    @property
    def link_type(self) -> int:
        """1 point-to-point, 2 multi-access."""
    @link_type.setter
    def link_type(self, value: int) -> None: ...
    @property
    def link_id(self) -> int:
        """The neighbour's router ID, or the designated router's address."""
    @link_id.setter
    def link_id(self, value: Number) -> None: ...
    @property
    def local_if_ipv4_addr_num(self) -> int:
        """Number of local addresses."""
    @property
    def local_if_ipv4_addr(self) -> list[Address | None]:
        """Addresses of the link's local interface."""
    @local_if_ipv4_addr.setter
    def local_if_ipv4_addr(self, value: Iterable[AddressLike]) -> None: ...
    @property
    def local_remote_ipv4_addr_num(self) -> int:
        """Number of remote addresses."""
    @property
    def local_remote_ipv4_addr(self) -> list[Address | None]:
        """Addresses of the link's remote interface."""
    @local_remote_ipv4_addr.setter
    def local_remote_ipv4_addr(self, value: Iterable[AddressLike]) -> None: ...
    @property
    def te_metric(self) -> int:
        """The traffic-engineering metric."""
    @te_metric.setter
    def te_metric(self, value: Number) -> None: ...
    @property
    def max_bandwidth(self) -> float:
        """The link's maximum bandwidth; the producer chooses the unit."""
    @max_bandwidth.setter
    def max_bandwidth(self, value: float) -> None: ...
    @property
    def max_reservable_bandwidth(self) -> float:
        """The bandwidth that may be reserved; the producer chooses the unit."""
    @max_reservable_bandwidth.setter
    def max_reservable_bandwidth(self, value: float) -> None: ...
    @property
    def unreserved_bandwidth(self) -> float:
        """The bandwidth not yet reserved; the producer chooses the unit."""
    @unreserved_bandwidth.setter
    def unreserved_bandwidth(self, value: float) -> None: ...
    @property
    def admin_group(self) -> int:
        """Administrative groups, one bit each."""
    @admin_group.setter
    def admin_group(self, value: Number) -> None: ...


class Ospfv2UnknownTlv(Structure):
    """A TLV of an opaque LSA in raw form, with the fields of traffic engineering beside it."""
    @property
    def type(self) -> int:
        """The TLV's type."""
    @type.setter
    def type(self, value: int) -> None: ...
    @property
    def length(self) -> int:
        """The TLV's length in octets as advertised, whatever value_num says."""
    @length.setter
    def length(self, value: int) -> None: ...
    @property
    def value_num(self) -> int:
        """Number of octets in value."""
    @property
    def value(self) -> bytes:
        """The TLV's octets."""
    @value.setter
    def value(self, value: bytes | bytearray | str | Iterable[int]) -> None: ...
    @property
    def router_address(self) -> Address | None:
        """The address of a router address TLV."""
    @router_address.setter
    def router_address(self, value: AddressLike) -> None: ...
    @property
    def tlv(self) -> Ospfv2LinkTlv:
        """The fields of a link TLV."""
    @tlv.setter
    def tlv(self, value: Ospfv2LinkTlv | Mapping[str, Any]) -> None: ...
    @property
    def unknown_sub_tlv(self) -> Ospfv2UnknownSubTlvTable | None:
        """Sub-TLVs that no field covers."""
    @unknown_sub_tlv.setter
    def unknown_sub_tlv(self, value: Ospfv2UnknownSubTlvTable | None) -> None: ...
    unknown_sub_tlvs = unknown_sub_tlv


class Ospfv2External(Structure):
    """An OSPFv2 external route in one topology."""
    @property
    def mt_id(self) -> int:
        """The topology's number; 0 is the default topology."""
    @mt_id.setter
    def mt_id(self, value: Number) -> None: ...
    @property
    def metric(self) -> int:
        """The metric in that topology."""
    @metric.setter
    def metric(self, value: Number) -> None: ...
    @property
    def forwarding_address(self) -> Address | None:
        """Where traffic for the destination is to be sent; unset for the advertising router."""
    @forwarding_address.setter
    def forwarding_address(self, value: AddressLike) -> None: ...
    @property
    def external_route_tag(self) -> int:
        """The tag that the external route carries."""
    @external_route_tag.setter
    def external_route_tag(self, value: Number) -> None: ...


class Ospfv2Topology(Structure):
    """A metric in one topology."""
    @property
    def mt_id(self) -> int:
        """The topology's number; 0 is the default topology."""
    @mt_id.setter
    def mt_id(self, value: Number) -> None: ...
    @property
    def metric(self) -> int:
        """The metric in that topology."""
    @metric.setter
    def metric(self, value: int) -> None: ...


class Ospfv2LinkKey(Structure):
    """What identifies a link of an OSPFv2 router LSA."""
    @property
    def link_id(self) -> int:
        """The link ID."""
    @link_id.setter
    def link_id(self, value: Number) -> None: ...
    @property
    def link_data(self) -> int:
        """The link data."""
    @link_data.setter
    def link_data(self, value: Number) -> None: ...


class Ospfv2Link(Structure):
    """One link of an OSPFv2 router LSA."""
    @property
    def type(self) -> int:
        """The link's type: 1 point-to-point, 2 transit, 3 stub, 4 virtual."""
    @type.setter
    def type(self, value: int) -> None: ...
    @property
    def topology(self) -> Ospfv2TopologyTable | None:
        """The link's metrics, one row for each topology."""
    @topology.setter
    def topology(self, value: Ospfv2TopologyTable | None) -> None: ...
    topologies = topology


class LinkScopeLsaKey(Structure):
    """What identifies an LSA of link scope among those of its type."""
    @property
    def lsa_id(self) -> int:
        """The link-state ID as a number."""
    @lsa_id.setter
    def lsa_id(self, value: Number) -> None: ...
    @property
    def adv_router(self) -> Address | None:
        """Router ID of the advertising router."""
    @adv_router.setter
    def adv_router(self, value: AddressLike) -> None: ...


class LsaOptions(Structure):
    """The OSPFv2 option bits, one boolean each."""
    @property
    def DC(self) -> bool:
        """Demand circuits are handled."""
    @DC.setter
    def DC(self, value: bool) -> None: ...
    @property
    def P(self) -> bool:
        """A type 7 LSA is to be translated."""
    @P.setter
    def P(self, value: bool) -> None: ...
    @property
    def MC(self) -> bool:
        """Multicast datagrams are forwarded."""
    @MC.setter
    def MC(self, value: bool) -> None: ...
    @property
    def E(self) -> bool:
        """AS-external LSAs are accepted."""
    @E.setter
    def E(self, value: bool) -> None: ...
    @property
    def Upward(self) -> bool:
        """The up bit of the options."""
    @Upward.setter
    def Upward(self, value: bool) -> None: ...
    @property
    def MT(self) -> bool:
        """Multi-topology routing is in use."""
    @MT.setter
    def MT(self, value: bool) -> None: ...
    @property
    def R(self) -> bool:
        """The originator forwards traffic."""
    @R.setter
    def R(self, value: bool) -> None: ...
    @property
    def AF(self) -> bool:
        """Address families are supported."""
    @AF.setter
    def AF(self, value: bool) -> None: ...


class Ospfv2LsaBodyFlags(Structure):
    """The bits of an OSPFv2 router LSA, one boolean each."""
    @property
    def V(self) -> bool:
        """The router is an endpoint of a virtual link."""
    @V.setter
    def V(self, value: bool) -> None: ...
    @property
    def E(self) -> bool:
        """The router is an AS boundary router."""
    @E.setter
    def E(self, value: bool) -> None: ...
    @property
    def B(self) -> bool:
        """The router is an area border router."""
    @B.setter
    def B(self, value: bool) -> None: ...


class Ospfv2Network(Structure):
    """What an OSPFv2 network LSA says."""
    @property
    def network_mask(self) -> Address | None:
        """The network's mask."""
    @network_mask.setter
    def network_mask(self, value: AddressLike) -> None: ...
    @property
    def attached_router_num(self) -> int:
        """Number of attached routers."""
    @property
    def attached_router(self) -> list[int]:
        """Router IDs of the attached routers."""
    @attached_router.setter
    def attached_router(self, value: Iterable[Number]) -> None: ...


class Ospfv2LsaBody(Structure):
    """The body of an OSPFv2 LSA: router, network, summary and external data side by side."""
    @property
    def lsa_flags(self) -> Ospfv2LsaBodyFlags:
        """A router LSA's bits as booleans."""
    @lsa_flags.setter
    def lsa_flags(self, value: Ospfv2LsaBodyFlags | Mapping[str, Any]) -> None: ...
    @property
    def num_of_links(self) -> int:
        """A router LSA's number of links, as advertised."""
    @num_of_links.setter
    def num_of_links(self, value: int) -> None: ...
    @property
    def network(self) -> Ospfv2Network:
        """What a network LSA says."""
    @network.setter
    def network(self, value: Ospfv2Network | Mapping[str, Any]) -> None: ...
    @property
    def summary_mask(self) -> Address | None:
        """A summary LSA's network mask."""
    @summary_mask.setter
    def summary_mask(self, value: AddressLike) -> None: ...
    @property
    def external_mask(self) -> Address | None:
        """An external LSA's network mask."""
    @external_mask.setter
    def external_mask(self, value: AddressLike) -> None: ...
    @property
    def body_flag_options(self) -> Ospfv2LsaBodyFlagsOptions:
        """A router LSA's bits as a flag set; filling one form does not fill the other."""
    @body_flag_options.setter
    def body_flag_options(self, value: Ospfv2LsaBodyFlagsOptions | int | str | Iterable[str]) -> None: ...


class LsaHeader(Structure):
    """The fields that the headers of both protocol versions share by name."""
    @property
    def age(self) -> int:
        """Age in seconds."""
    @age.setter
    def age(self, value: int) -> None: ...
    @property
    def type(self) -> int:
        """The LS type with its function and scope bits, as the producer numbers it."""
    @type.setter
    def type(self, value: int) -> None: ...
    @property
    def adv_router(self) -> int:
        """Router ID of the advertising router."""
    @adv_router.setter
    def adv_router(self, value: Number) -> None: ...
    @property
    def seq_num(self) -> str:
        """The sequence number as text; the producer chooses the notation."""
    @seq_num.setter
    def seq_num(self, value: str | bytes) -> None: ...
    @property
    def checksum(self) -> str:
        """The checksum as text; the producer chooses the notation."""
    @checksum.setter
    def checksum(self, value: str | bytes) -> None: ...
    @property
    def length(self) -> int:
        """Length of the LSA in octets, header included."""
    @length.setter
    def length(self, value: int) -> None: ...


class Ospfv2Header(Structure):
    """The header of an OSPFv2 LSA."""
    @property
    def options(self) -> LsaOptions:
        """The option bits as booleans."""
    @options.setter
    def options(self, value: LsaOptions | Mapping[str, Any]) -> None: ...
    @property
    def lsa_id(self) -> Address | None:
        """The link-state ID."""
    @lsa_id.setter
    def lsa_id(self, value: AddressLike) -> None: ...
    @property
    def opaque_type(self) -> int:
        """First octet of an opaque LSA's link-state ID."""
    @opaque_type.setter
    def opaque_type(self, value: int) -> None: ...
    @property
    def opaque_id(self) -> int:
        """The other 24 bits of an opaque LSA's link-state ID."""
    @opaque_id.setter
    def opaque_id(self, value: Number) -> None: ...
    @property
    def age(self) -> int:
        """Age in seconds."""
    @age.setter
    def age(self, value: int) -> None: ...
    @property
    def type(self) -> int:
        """The LS type as the producer numbers it."""
    @type.setter
    def type(self, value: int) -> None: ...
    @property
    def adv_router(self) -> int:
        """Router ID of the advertising router."""
    @adv_router.setter
    def adv_router(self, value: Number) -> None: ...
    @property
    def seq_num(self) -> str:
        """The sequence number as text; the producer chooses the notation."""
    @seq_num.setter
    def seq_num(self, value: str | bytes) -> None: ...
    @property
    def checksum(self) -> str:
        """The checksum as text; the producer chooses the notation."""
    @checksum.setter
    def checksum(self, value: str | bytes) -> None: ...
    @property
    def length(self) -> int:
        """Length of the LSA in octets, header included."""
    @length.setter
    def length(self, value: int) -> None: ...
    @property
    def flag_options(self) -> LsaFlagOptions:
        """The option bits as a flag set; filling one form does not fill the other."""
    @flag_options.setter
    def flag_options(self, value: LsaFlagOptions | int | str | Iterable[str]) -> None: ...


class Ospfv2Lsa(Structure):
    """An OSPFv2 LSA: header and body."""
    @property
    def header(self) -> Ospfv2Header:
        """The LSA's header."""
    @header.setter
    def header(self, value: Ospfv2Header | Mapping[str, Any]) -> None: ...
    @property
    def lsa_body(self) -> Ospfv2LsaBody:
        """The LSA's body, with a place for every kind of LSA."""
    @lsa_body.setter
    def lsa_body(self, value: Ospfv2LsaBody | Mapping[str, Any]) -> None: ...


class Ospfv3LsaOptions(Structure):
    """The OSPFv3 option bits, one boolean each."""
    @property
    def DC(self) -> bool:
        """Demand circuits are handled."""
    @DC.setter
    def DC(self, value: bool) -> None: ...
    @property
    def R(self) -> bool:
        """The originator is an active router."""
    @R.setter
    def R(self, value: bool) -> None: ...
    @property
    def N(self) -> bool:
        """Type 7 LSAs are handled."""
    @N.setter
    def N(self, value: bool) -> None: ...
    @property
    def E(self) -> bool:
        """AS-external LSAs are accepted."""
    @E.setter
    def E(self, value: bool) -> None: ...
    @property
    def V6(self) -> bool:
        """The router takes part in IPv6 routing."""
    @V6.setter
    def V6(self, value: bool) -> None: ...
    @property
    def AF(self) -> bool:
        """Address families are supported."""
    @AF.setter
    def AF(self, value: bool) -> None: ...


class Ospfv3Header(Structure):
    """The header of an OSPFv3 LSA."""
    @property
    def lsa_id(self) -> Address | None:
        """The link-state ID."""
    @lsa_id.setter
    def lsa_id(self, value: AddressLike) -> None: ...
    @property
    def lsa_header_val(self) -> LsaHeader:
        """The part of the header that both protocol versions share by name."""
    @lsa_header_val.setter
    def lsa_header_val(self, value: LsaHeader | Mapping[str, Any]) -> None: ...
    @property
    def lsa_hdr_options(self) -> Ospfv3LsaOptions:
        """The option bits as booleans."""
    @lsa_hdr_options.setter
    def lsa_hdr_options(self, value: Ospfv3LsaOptions | Mapping[str, Any]) -> None: ...
    @property
    def lsa_flag_hdr_options(self) -> Ospfv3LsaFlagOptions:
        """The option bits as a flag set; filling one form does not fill the other."""
    @lsa_flag_hdr_options.setter
    def lsa_flag_hdr_options(self, value: Ospfv3LsaFlagOptions | int | str | Iterable[str]) -> None: ...


class Ospfv3LsaBodyFlags(Structure):
    """The bits of an OSPFv3 router LSA, one boolean each."""
    @property
    def V(self) -> bool:
        """The router is an endpoint of a virtual link."""
    @V.setter
    def V(self, value: bool) -> None: ...
    @property
    def E(self) -> bool:
        """The router is an AS boundary router."""
    @E.setter
    def E(self, value: bool) -> None: ...
    @property
    def B(self) -> bool:
        """The router is an area border router."""
    @B.setter
    def B(self, value: bool) -> None: ...
    @property
    def Nt(self) -> bool:
        """The router translates type 7 LSAs whatever others do."""
    @Nt.setter
    def Nt(self, value: bool) -> None: ...


class Ospfv3Network(Structure):
    """What an OSPFv3 network LSA says."""
    @property
    def lsa_net_options(self) -> Ospfv3LsaOptions:
        """The option bits as booleans."""
    @lsa_net_options.setter
    def lsa_net_options(self, value: Ospfv3LsaOptions | Mapping[str, Any]) -> None: ...
    @property
    def attached_router_num(self) -> int:
        """Number of attached routers."""
    @property
    def attached_router(self) -> list[int]:
        """Router IDs of the attached routers."""
    @attached_router.setter
    def attached_router(self, value: Iterable[Number]) -> None: ...
    @property
    def lsa_flag_hdr_options(self) -> Ospfv3LsaFlagOptions:
        """The option bits as a flag set; filling one form does not fill the other."""
    @lsa_flag_hdr_options.setter
    def lsa_flag_hdr_options(self, value: Ospfv3LsaFlagOptions | int | str | Iterable[str]) -> None: ...


class Ospfv3InterAreaPrefix(Structure):
    """What an inter-area prefix LSA says."""
    @property
    def metric(self) -> int:
        """Cost of the route to the prefix."""
    @metric.setter
    def metric(self, value: Number) -> None: ...
    @property
    def ia_prefix(self) -> str:
        """The prefix as text."""
    @ia_prefix.setter
    def ia_prefix(self, value: str | bytes) -> None: ...
    @property
    def ia_prefix_options(self) -> str:
        """The prefix's options as text."""
    @ia_prefix_options.setter
    def ia_prefix_options(self, value: str | bytes) -> None: ...


class Ospfv3InterAreaRouter(Structure):
    """What an inter-area router LSA says."""
    @property
    def lsa_ia_options(self) -> Ospfv3LsaOptions:
        """The destination router's option bits as booleans."""
    @lsa_ia_options.setter
    def lsa_ia_options(self, value: Ospfv3LsaOptions | Mapping[str, Any]) -> None: ...
    @property
    def metric(self) -> int:
        """Cost of the route to the router."""
    @metric.setter
    def metric(self, value: Number) -> None: ...
    @property
    def destination_router_id(self) -> int:
        """Router ID of the router described."""
    @destination_router_id.setter
    def destination_router_id(self, value: Number) -> None: ...
    @property
    def lsa_flag_hdr_options(self) -> Ospfv3LsaFlagOptions:
        """The option bits as a flag set; filling one form does not fill the other."""
    @lsa_flag_hdr_options.setter
    def lsa_flag_hdr_options(self, value: Ospfv3LsaFlagOptions | int | str | Iterable[str]) -> None: ...


class Ospfv3LsaExternalFlags(Structure):
    """The bits of an OSPFv3 AS-external LSA."""
    @property
    def E(self) -> bool:
        """The metric is of type 2, larger than any cost inside the AS."""
    @E.setter
    def E(self, value: bool) -> None: ...


class Ospfv3LsaExternal(Structure):
    """What an OSPFv3 AS-external LSA says."""
    @property
    def metric(self) -> int:
        """Cost of the route."""
    @metric.setter
    def metric(self, value: Number) -> None: ...
    @property
    def flags_val(self) -> Ospfv3LsaExternalFlags:
        """The LSA's flag bits."""
    @flags_val.setter
    def flags_val(self, value: Ospfv3LsaExternalFlags | Mapping[str, Any]) -> None: ...
    @property
    def referenced_ls_type(self) -> int:
        """LS type of an LSA that belongs to this one; 0 for none."""
    @referenced_ls_type.setter
    def referenced_ls_type(self, value: int) -> None: ...
    @property
    def external_prefix(self) -> str:
        """The prefix as text."""
    @external_prefix.setter
    def external_prefix(self, value: str | bytes) -> None: ...
    @property
    def external_prefix_options(self) -> str:
        """The prefix's options as text."""
    @external_prefix_options.setter
    def external_prefix_options(self, value: str | bytes) -> None: ...
    @property
    def forwarding_address(self) -> Address | None:
        """Where traffic for the destination is to be sent; unset for the advertising router."""
    @forwarding_address.setter
    def forwarding_address(self, value: AddressLike) -> None: ...
    @property
    def external_route_tag(self) -> int:
        """The tag that the external route carries."""
    @external_route_tag.setter
    def external_route_tag(self, value: Number) -> None: ...
    @property
    def referenced_link_state_id(self) -> int:
        """Link-state ID of the LSA referred to."""
    @referenced_link_state_id.setter
    def referenced_link_state_id(self, value: Number) -> None: ...


class Ospfv3Nssa(Structure):
    """What an OSPFv3 NSSA LSA says: an external LSA by another name."""
    @property
    def lsa_nssa_external(self) -> Ospfv3LsaExternal:
        """The external data of the LSA."""
    @lsa_nssa_external.setter
    def lsa_nssa_external(self, value: Ospfv3LsaExternal | Mapping[str, Any]) -> None: ...


class Ospfv3LinkData(Structure):
    """What a link LSA says."""
    @property
    def rtr_priority(self) -> int:
        """The originator's router priority on the link."""
    @rtr_priority.setter
    def rtr_priority(self, value: int) -> None: ...
    @property
    def lsa_ld_options(self) -> Ospfv3LsaOptions:
        """The option bits as booleans."""
    @lsa_ld_options.setter
    def lsa_ld_options(self, value: Ospfv3LsaOptions | Mapping[str, Any]) -> None: ...
    @property
    def link_local_interface_address(self) -> Address | None:
        """The originator's link-local address on the link."""
    @link_local_interface_address.setter
    def link_local_interface_address(self, value: AddressLike) -> None: ...
    @property
    def num_of_prefixes(self) -> int:
        """Number of prefixes as advertised; related to no table."""
    @num_of_prefixes.setter
    def num_of_prefixes(self, value: Number) -> None: ...
    @property
    def lsa_flag_hdr_options(self) -> Ospfv3LsaFlagOptions:
        """The option bits as a flag set; filling one form does not fill the other."""
    @lsa_flag_hdr_options.setter
    def lsa_flag_hdr_options(self, value: Ospfv3LsaFlagOptions | int | str | Iterable[str]) -> None: ...


class Ospfv3IntraAreaPrefix(Structure):
    """What an intra-area prefix LSA says."""
    @property
    def referenced_ls_type(self) -> int:
        """LS type of an LSA that belongs to this one; 0 for none."""
    @referenced_ls_type.setter
    def referenced_ls_type(self, value: int) -> None: ...
    @property
    def referenced_link_state_id(self) -> int:
        """Link-state ID of the LSA referred to."""
    @referenced_link_state_id.setter
    def referenced_link_state_id(self, value: Number) -> None: ...
    @property
    def referenced_adv_router(self) -> Address | None:
        """Advertising router of the LSA referred to."""
    @referenced_adv_router.setter
    def referenced_adv_router(self, value: AddressLike) -> None: ...
    @property
    def num_of_prefixes(self) -> int:
        """Number of prefixes as advertised; related to no table."""
    @num_of_prefixes.setter
    def num_of_prefixes(self, value: int) -> None: ...


class Ospfv3LsaBody(Structure):
    """The body of an OSPFv3 LSA: all kinds side by side."""
    @property
    def lsa_flags(self) -> Ospfv3LsaBodyFlags:
        """A router LSA's bits as booleans."""
    @lsa_flags.setter
    def lsa_flags(self, value: Ospfv3LsaBodyFlags | Mapping[str, Any]) -> None: ...
    @property
    def lsa_body_options(self) -> Ospfv3LsaOptions:
        """A router LSA's option bits as booleans."""
    @lsa_body_options.setter
    def lsa_body_options(self, value: Ospfv3LsaOptions | Mapping[str, Any]) -> None: ...
    @property
    def network(self) -> Ospfv3Network:
        """What a network LSA says."""
    @network.setter
    def network(self, value: Ospfv3Network | Mapping[str, Any]) -> None: ...
    @property
    def prefix(self) -> Ospfv3InterAreaPrefix:
        """What an inter-area prefix LSA says."""
    @prefix.setter
    def prefix(self, value: Ospfv3InterAreaPrefix | Mapping[str, Any]) -> None: ...
    @property
    def ia_router(self) -> Ospfv3InterAreaRouter:
        """What an inter-area router LSA says."""
    @ia_router.setter
    def ia_router(self, value: Ospfv3InterAreaRouter | Mapping[str, Any]) -> None: ...
    @property
    def lsa_external(self) -> Ospfv3LsaExternal:
        """What an AS-external LSA says."""
    @lsa_external.setter
    def lsa_external(self, value: Ospfv3LsaExternal | Mapping[str, Any]) -> None: ...
    @property
    def nssa(self) -> Ospfv3Nssa:
        """What an NSSA LSA says."""
    @nssa.setter
    def nssa(self, value: Ospfv3Nssa | Mapping[str, Any]) -> None: ...
    @property
    def link_data(self) -> Ospfv3LinkData:
        """What a link LSA says."""
    @link_data.setter
    def link_data(self, value: Ospfv3LinkData | Mapping[str, Any]) -> None: ...
    @property
    def ia_prefix(self) -> Ospfv3IntraAreaPrefix:
        """What an intra-area prefix LSA says."""
    @ia_prefix.setter
    def ia_prefix(self, value: Ospfv3IntraAreaPrefix | Mapping[str, Any]) -> None: ...
    @property
    def lsa_flag_options(self) -> Ospfv3LsaFlagOptions:
        """A router LSA's option bits as a flag set; filling one form does not fill the other."""
    @lsa_flag_options.setter
    def lsa_flag_options(self, value: Ospfv3LsaFlagOptions | int | str | Iterable[str]) -> None: ...
    @property
    def lsa_body_flags(self) -> Ospfv3LsaBodyFlagOptions:
        """A router LSA's bits as a flag set; filling one form does not fill the other."""
    @lsa_body_flags.setter
    def lsa_body_flags(self, value: Ospfv3LsaBodyFlagOptions | int | str | Iterable[str]) -> None: ...


class Ospfv3Lsa(Structure):
    """An OSPFv3 LSA: header and body."""
    @property
    def header(self) -> Ospfv3Header:
        """The LSA's header."""
    @header.setter
    def header(self, value: Ospfv3Header | Mapping[str, Any]) -> None: ...
    @property
    def lsa_body(self) -> Ospfv3LsaBody:
        """The LSA's body, with a place for every kind of LSA."""
    @lsa_body.setter
    def lsa_body(self, value: Ospfv3LsaBody | Mapping[str, Any]) -> None: ...


class Ospfv3LinkKey(Structure):
    """What identifies a link of an OSPFv3 router LSA."""
    @property
    def interface_id(self) -> int:
        """The advertising router's interface ID."""
    @interface_id.setter
    def interface_id(self, value: Number) -> None: ...
    @property
    def neighbor_interface_id(self) -> int:
        """The neighbour's interface ID."""
    @neighbor_interface_id.setter
    def neighbor_interface_id(self, value: Number) -> None: ...
    @property
    def neighbor_router_id(self) -> int:
        """The neighbour's router ID."""
    @neighbor_router_id.setter
    def neighbor_router_id(self, value: Number) -> None: ...


class Ospfv3Link(Structure):
    """One link of an OSPFv3 router LSA."""
    @property
    def type(self) -> int:
        """The link's type: 1 point-to-point, 2 transit, 4 virtual."""
    @type.setter
    def type(self, value: int) -> None: ...
    @property
    def metric(self) -> int:
        """Cost of using the interface."""
    @metric.setter
    def metric(self, value: int) -> None: ...


class Ospfv3PrefixList(Structure):
    """A prefix of a link LSA or an intra-area prefix LSA."""
    @property
    def prefix(self) -> str:
        """The prefix as text."""
    @prefix.setter
    def prefix(self, value: str | bytes) -> None: ...
    @property
    def prefix_options(self) -> str:
        """The prefix's options as text."""
    @prefix_options.setter
    def prefix_options(self, value: str | bytes) -> None: ...


class MultiTopology(Structure):
    """The name of a topology."""
    @property
    def name(self) -> str:
        """The topology's name; key of the table."""
    @name.setter
    def name(self, value: str | bytes) -> None: ...


class LinkScopeLsa(Structure):
    """An LSA of link scope, as received and in typed form for both protocol versions."""
    @property
    def decoded_completed(self) -> bool:
        """The producer has filled the typed fields from raw_data."""
    @decoded_completed.setter
    def decoded_completed(self, value: bool) -> None: ...
    @property
    def raw_data_len(self) -> int:
        """Number of octets in raw_data."""
    @property
    def raw_data(self) -> bytes:
        """The LSA as received, header first."""
    @raw_data.setter
    def raw_data(self, value: bytes | bytearray | str | Iterable[int]) -> None: ...
    @property
    def version(self) -> int:
        """The OSPF version that the LSA belongs to."""
    @version.setter
    def version(self, value: Number) -> None: ...
    @property
    def ospfv2_lsa_val(self) -> Ospfv2Lsa:
        """The LSA in typed form, if it is of OSPFv2; zero else."""
    @ospfv2_lsa_val.setter
    def ospfv2_lsa_val(self, value: Ospfv2Lsa | Mapping[str, Any]) -> None: ...
    @property
    def ospfv2_links(self) -> Ospfv2LinkTable | None:
        """A router LSA's links."""
    @ospfv2_links.setter
    def ospfv2_links(self, value: Ospfv2LinkTable | None) -> None: ...
    @property
    def summary(self) -> Ospfv2TopologyTable | None:
        """A summary LSA's metrics, one row for each topology."""
    @summary.setter
    def summary(self, value: Ospfv2TopologyTable | None) -> None: ...
    summaries = summary
    @property
    def external(self) -> Ospfv2ExternalTable | None:
        """An external LSA's entries, one row for each topology."""
    @external.setter
    def external(self, value: Ospfv2ExternalTable | None) -> None: ...
    externals = external
    @property
    def unknown_tlv(self) -> Ospfv2UnknownTlvTable | None:
        """TLVs that no field covers."""
    @unknown_tlv.setter
    def unknown_tlv(self, value: Ospfv2UnknownTlvTable | None) -> None: ...
    unknown_tlvs = unknown_tlv
    @property
    def ospfv3_lsa_val(self) -> Ospfv3Lsa:
        """The LSA in typed form, if it is of OSPFv3; zero else."""
    @ospfv3_lsa_val.setter
    def ospfv3_lsa_val(self, value: Ospfv3Lsa | Mapping[str, Any]) -> None: ...
    @property
    def ospfv3_links(self) -> Ospfv3LinkTable | None:
        """A router LSA's links."""
    @ospfv3_links.setter
    def ospfv3_links(self, value: Ospfv3LinkTable | None) -> None: ...
    @property
    def prefix_list(self) -> Ospfv3PrefixListTable | None:
        """A link LSA's prefixes."""
    @prefix_list.setter
    def prefix_list(self, value: Ospfv3PrefixListTable | None) -> None: ...
    prefix_lists = prefix_list
    @property
    def ia_prefix_list(self) -> Ospfv3IaPrefixListTable | None:
        """An intra-area prefix LSA's prefixes."""
    @ia_prefix_list.setter
    def ia_prefix_list(self, value: Ospfv3IaPrefixListTable | None) -> None: ...
    ia_prefix_lists = ia_prefix_list
    @property
    def multi_topology(self) -> MultiTopologyTable | None:
        """The LSA's topology names."""
    @multi_topology.setter
    def multi_topology(self, value: MultiTopologyTable | None) -> None: ...
    multi_topologies = multi_topology
    @property
    def router_address(self) -> Address | None:
        """The router address of traffic-engineering data."""
    @router_address.setter
    def router_address(self, value: AddressLike) -> None: ...
    @property
    def tlv(self) -> Ospfv2LinkTlv:
        """The link TLV of traffic-engineering data."""
    @tlv.setter
    def tlv(self, value: Ospfv2LinkTlv | Mapping[str, Any]) -> None: ...
    @property
    def unknown_sub_tlv(self) -> Ospfv2UnknownSubTlvTable | None:
        """Sub-TLVs that no field covers."""
    @unknown_sub_tlv.setter
    def unknown_sub_tlv(self, value: Ospfv2UnknownSubTlvTable | None) -> None: ...
    unknown_sub_tlvs = unknown_sub_tlv


class AreaScopeLsaKey(Structure):
    """What identifies an LSA of area scope among those of its type."""
    @property
    def lsa_id(self) -> int:
        """The link-state ID as a number."""
    @lsa_id.setter
    def lsa_id(self, value: Number) -> None: ...
    @property
    def adv_router(self) -> Address | None:
        """Router ID of the advertising router."""
    @adv_router.setter
    def adv_router(self, value: AddressLike) -> None: ...


class AreaScopeLsa(Structure):
    """An LSA of area scope, as received and in typed form for both protocol versions."""
    @property
    def decoded_completed(self) -> bool:
        """The producer has filled the typed fields from raw_data."""
    @decoded_completed.setter
    def decoded_completed(self, value: bool) -> None: ...
    @property
    def raw_data_len(self) -> int:
        """Number of octets in raw_data."""
    @property
    def raw_data(self) -> bytes:
        """The LSA as received, header first."""
    @raw_data.setter
    def raw_data(self, value: bytes | bytearray | str | Iterable[int]) -> None: ...
    @property
    def ospfv2_lsa_val(self) -> Ospfv2Lsa:
        """The LSA in typed form, if it is of OSPFv2; zero else."""
    @ospfv2_lsa_val.setter
    def ospfv2_lsa_val(self, value: Ospfv2Lsa | Mapping[str, Any]) -> None: ...
    @property
    def links(self) -> Ospfv2LinkTable | None:
        """A router LSA's links."""
    @links.setter
    def links(self, value: Ospfv2LinkTable | None) -> None: ...
    @property
    def summary(self) -> Ospfv2TopologyTable | None:
        """A summary LSA's metrics, one row for each topology."""
    @summary.setter
    def summary(self, value: Ospfv2TopologyTable | None) -> None: ...
    summaries = summary
    @property
    def external(self) -> Ospfv2ExternalTable | None:
        """An external LSA's entries, one row for each topology."""
    @external.setter
    def external(self, value: Ospfv2ExternalTable | None) -> None: ...
    externals = external
    @property
    def ospfv3_lsa_val(self) -> Ospfv3Lsa:
        """The LSA in typed form, if it is of OSPFv3; zero else."""
    @ospfv3_lsa_val.setter
    def ospfv3_lsa_val(self, value: Ospfv3Lsa | Mapping[str, Any]) -> None: ...
    @property
    def ospfv3_links(self) -> Ospfv3LinkTable | None:
        """A router LSA's links."""
    @ospfv3_links.setter
    def ospfv3_links(self, value: Ospfv3LinkTable | None) -> None: ...
    @property
    def prefix_list(self) -> Ospfv3PrefixListTable | None:
        """A link LSA's prefixes."""
    @prefix_list.setter
    def prefix_list(self, value: Ospfv3PrefixListTable | None) -> None: ...
    prefix_lists = prefix_list
    @property
    def ia_prefix_list(self) -> Ospfv3IaPrefixListTable | None:
        """An intra-area prefix LSA's prefixes."""
    @ia_prefix_list.setter
    def ia_prefix_list(self, value: Ospfv3IaPrefixListTable | None) -> None: ...
    ia_prefix_lists = ia_prefix_list


class AreaScopeLsas(Structure):
    """A group of area-scope LSAs."""
    @property
    def lsa_id(self) -> int:
        """Key of the row."""
    @lsa_id.setter
    def lsa_id(self, value: Number) -> None: ...
    @property
    def area_scope_lsa(self) -> AreaScopeLsaTable | None:
        """The row's LSAs."""
    @area_scope_lsa.setter
    def area_scope_lsa(self, value: AreaScopeLsaTable | None) -> None: ...
    area_scope_lsas = area_scope_lsa


class LinkScopeLsas(Structure):
    """The databases of one LS type."""
    @property
    def lsa_type(self) -> int:
        """The LS type that the row gathers; key of the table."""
    @lsa_type.setter
    def lsa_type(self, value: Number) -> None: ...
    @property
    def link_scope_lsa_db(self) -> LinkScopeLsaTable | None:
        """The row's link-scope LSAs."""
    @link_scope_lsa_db.setter
    def link_scope_lsa_db(self, value: LinkScopeLsaTable | None) -> None: ...
    link_scope_lsa_dbs = link_scope_lsa_db
    @property
    def area_scope_lsa_db(self) -> AreaScopeLsaTable | None:
        """The row's area-scope LSAs."""
    @area_scope_lsa_db.setter
    def area_scope_lsa_db(self, value: AreaScopeLsaTable | None) -> None: ...
    area_scope_lsa_dbs = area_scope_lsa_db


class OspfStaticNeighbor(Structure):
    """A configured neighbour."""
    @property
    def address(self) -> Address | None:
        """The neighbour's address; key of the table."""
    @address.setter
    def address(self, value: AddressLike) -> None: ...
    @property
    def cost(self) -> int:
        """Cost to the neighbour."""
    @cost.setter
    def cost(self, value: int) -> None: ...
    @property
    def poll_interval(self) -> int:
        """Time between hellos to a neighbour that is down; the producer chooses the unit."""
    @poll_interval.setter
    def poll_interval(self, value: int) -> None: ...


class OspfNbrStat(Structure):
    """Counters of a neighbour."""
    @property
    def nbr_event_count(self) -> int:
        """Number of neighbour events."""
    @nbr_event_count.setter
    def nbr_event_count(self, value: Number) -> None: ...
    @property
    def nbr_retrans_qlen(self) -> int:
        """Length of the retransmission queue."""
    @nbr_retrans_qlen.setter
    def nbr_retrans_qlen(self, value: Number) -> None: ...


class OspfNeighbor(Structure):
    """A neighbour heard on an interface."""
    @property
    def neighbor_id(self) -> Address | None:
        """The neighbour's router ID; key of the table."""
    @neighbor_id.setter
    def neighbor_id(self, value: AddressLike) -> None: ...
    @property
    def address(self) -> Address | None:
        """The neighbour's address on the interface."""
    @address.setter
    def address(self, value: AddressLike) -> None: ...
    @property
    def dr(self) -> Address | None:
        """The designated router that the neighbour declares."""
    @dr.setter
    def dr(self, value: AddressLike) -> None: ...
    @property
    def bdr(self) -> Address | None:
        """The backup designated router that the neighbour declares."""
    @bdr.setter
    def bdr(self, value: AddressLike) -> None: ...
    @property
    def state(self) -> NbrStateType:
        """State of the conversation with the neighbour."""
    @state.setter
    def state(self, value: NbrStateType | int | str) -> None: ...
    @property
    def stats(self) -> OspfNbrStat:
        """The neighbour's counters."""
    @stats.setter
    def stats(self, value: OspfNbrStat | Mapping[str, Any]) -> None: ...


class FastReroute(Structure):
    """Settings of fast reroute."""
    @property
    def candidate_disabled(self) -> bool:
        """The interface is no candidate for a backup next hop."""
    @candidate_disabled.setter
    def candidate_disabled(self, value: bool) -> None: ...
    @property
    def enabled(self) -> bool:
        """Loop-free alternates are computed."""
    @enabled.setter
    def enabled(self, value: bool) -> None: ...
    @property
    def remote_lfa_enabled(self) -> bool:
        """Remote loop-free alternates are computed."""
    @remote_lfa_enabled.setter
    def remote_lfa_enabled(self, value: bool) -> None: ...


class MultiArea(Structure):
    """Settings of a multi-area adjacency."""
    @property
    def multi_area_id(self) -> int:
        """The other area's ID."""
    @multi_area_id.setter
    def multi_area_id(self, value: Number) -> None: ...
    @property
    def cost(self) -> int:
        """Output cost in the other area."""
    @cost.setter
    def cost(self, value: int) -> None: ...


class OspfCryptoAlgorithm(Structure):
    """Algorithms that may be used; not exclusive of one another."""
    @property
    def hmac_sha1_12(self) -> bool:
        """HMAC-SHA-1-12 may be used."""
    @hmac_sha1_12.setter
    def hmac_sha1_12(self, value: bool) -> None: ...
    @property
    def hmac_sha1_20(self) -> bool:
        """HMAC-SHA-1-20 may be used."""
    @hmac_sha1_20.setter
    def hmac_sha1_20(self, value: bool) -> None: ...
    @property
    def md5(self) -> bool:
        """MD5 may be used."""
    @md5.setter
    def md5(self, value: bool) -> None: ...
    @property
    def sha_1(self) -> bool:
        """SHA-1 may be used."""
    @sha_1.setter
    def sha_1(self, value: bool) -> None: ...
    @property
    def hmac_sha_1(self) -> bool:
        """HMAC-SHA-1 may be used."""
    @hmac_sha_1.setter
    def hmac_sha_1(self, value: bool) -> None: ...
    @property
    def hmac_sha_256(self) -> bool:
        """HMAC-SHA-256 may be used."""
    @hmac_sha_256.setter
    def hmac_sha_256(self, value: bool) -> None: ...
    @property
    def hmac_sha_384(self) -> bool:
        """HMAC-SHA-384 may be used."""
    @hmac_sha_384.setter
    def hmac_sha_384(self, value: bool) -> None: ...
    @property
    def hmac_sha_512(self) -> bool:
        """HMAC-SHA-512 may be used."""
    @hmac_sha_512.setter
    def hmac_sha_512(self, value: bool) -> None: ...


class OspfAuthentication(Structure):
    """How packets are authenticated: a choice whose arms are held by pointer."""
    @property
    def auth_type_selection(self) -> OspfAuthType:
        """Which arm is selected."""
    @auth_type_selection.setter
    def auth_type_selection(self, value: OspfAuthType | int | str) -> None: ...
    @property
    def sa(self) -> str | None:
        """Name of the IPsec security association."""
    @sa.setter
    def sa(self, value: str | bytes | None) -> None: ...
    @property
    def key_chain(self) -> str | None:
        """Name of the key chain of an authentication trailer."""
    @key_chain.setter
    def key_chain(self, value: str | bytes | None) -> None: ...
    @property
    def key_string(self) -> str | None:
        """Key of an authentication trailer, as text and not masked."""
    @key_string.setter
    def key_string(self, value: str | bytes | None) -> None: ...
    @property
    def crypto_algorithm_val(self) -> OspfCryptoAlgorithm | None:
        """Algorithms that go with the key."""
    @crypto_algorithm_val.setter
    def crypto_algorithm_val(self, value: OspfCryptoAlgorithm | Mapping[str, Any] | None) -> None: ...
    @property
    def no_auth(self) -> int | None:
        """Stands for no authentication."""
    @no_auth.setter
    def no_auth(self, value: Number | None) -> None: ...


class TtlSecurity(Structure):
    """Settings of the TTL check."""
    @property
    def enabled(self) -> bool:
        """Packets with too small a TTL are dropped."""
    @enabled.setter
    def enabled(self, value: bool) -> None: ...
    @property
    def hops(self) -> int:
        """Number of hops that a packet may have passed."""
    @hops.setter
    def hops(self, value: int) -> None: ...


class OspfInterface(Structure):
    """An interface: settings, timers and state."""
    @property
    def name(self) -> str:
        """The interface's name; key of the table."""
    @name.setter
    def name(self, value: str | bytes) -> None: ...
    @property
    def network_type(self) -> OspfNetworkType:
        """How OSPF treats the network."""
    @network_type.setter
    def network_type(self, value: OspfNetworkType | int | str) -> None: ...
    @property
    def passive(self) -> bool:
        """No protocol packets are sent or taken."""
    @passive.setter
    def passive(self, value: bool) -> None: ...
    @property
    def demand_circuit(self) -> bool:
        """The interface is treated as a demand circuit."""
    @demand_circuit.setter
    def demand_circuit(self, value: bool) -> None: ...
    @property
    def multi_area_val(self) -> MultiArea:
        """Settings of a multi-area adjacency."""
    @multi_area_val.setter
    def multi_area_val(self, value: MultiArea | Mapping[str, Any]) -> None: ...
    @property
    def static_neighbor(self) -> OspfStaticNeighborTable | None:
        """Configured neighbours."""
    @static_neighbor.setter
    def static_neighbor(self, value: OspfStaticNeighborTable | None) -> None: ...
    static_neighbors = static_neighbor
    @property
    def node_flag(self) -> bool:
        """The node flag of the interface's prefix."""
    @node_flag.setter
    def node_flag(self, value: bool) -> None: ...
    @property
    def fast_reroute_val(self) -> FastReroute:
        """Settings of fast reroute."""
    @fast_reroute_val.setter
    def fast_reroute_val(self, value: FastReroute | Mapping[str, Any]) -> None: ...
    @property
    def cost(self) -> int:
        """Output cost."""
    @cost.setter
    def cost(self, value: int) -> None: ...
    @property
    def hello_interval(self) -> int:
        """Time between hellos; the producer chooses the unit."""
    @hello_interval.setter
    def hello_interval(self, value: int) -> None: ...
    @property
    def dead_interval(self) -> int:
        """Silence after which a neighbour is down; the producer chooses the unit."""
    @dead_interval.setter
    def dead_interval(self, value: int) -> None: ...
    @property
    def retransmit_interval(self) -> int:
        """Time between retransmissions; the producer chooses the unit."""
    @retransmit_interval.setter
    def retransmit_interval(self, value: int) -> None: ...
    @property
    def transmit_delay(self) -> int:
        """Estimated time to send an update; the producer chooses the unit."""
    @transmit_delay.setter
    def transmit_delay(self, value: int) -> None: ...
    @property
    def mtu_ignore(self) -> bool:
        """A neighbour's MTU is not compared."""
    @mtu_ignore.setter
    def mtu_ignore(self, value: bool) -> None: ...
    @property
    def lls(self) -> bool:
        """Link-local signalling is on."""
    @lls.setter
    def lls(self, value: bool) -> None: ...
    @property
    def prefix_suppression(self) -> bool:
        """The interface's prefixes are not advertised."""
    @prefix_suppression.setter
    def prefix_suppression(self, value: bool) -> None: ...
    @property
    def bfd(self) -> bool:
        """Forwarding failures are detected by BFD."""
    @bfd.setter
    def bfd(self, value: bool) -> None: ...
    @property
    def ttl_security_val(self) -> TtlSecurity:
        """Settings of the TTL check."""
    @ttl_security_val.setter
    def ttl_security_val(self, value: TtlSecurity | Mapping[str, Any]) -> None: ...
    @property
    def enable(self) -> bool:
        """OSPF runs on the interface."""
    @enable.setter
    def enable(self, value: bool) -> None: ...
    @property
    def authentication_val(self) -> OspfAuthentication:
        """How packets are authenticated."""
    @authentication_val.setter
    def authentication_val(self, value: OspfAuthentication | Mapping[str, Any]) -> None: ...
    @property
    def state(self) -> str:
        """The interface state as free text."""
    @state.setter
    def state(self, value: str | bytes) -> None: ...
    @property
    def hello_timer(self) -> int:
        """The hello timer when reported; the producer chooses the unit."""
    @hello_timer.setter
    def hello_timer(self, value: Number) -> None: ...
    @property
    def wait_timer(self) -> int:
        """The wait timer when reported; the producer chooses the unit."""
    @wait_timer.setter
    def wait_timer(self, value: Number) -> None: ...
    @property
    def dr(self) -> Address | None:
        """Address of the designated router."""
    @dr.setter
    def dr(self, value: AddressLike) -> None: ...
    @property
    def bdr(self) -> Address | None:
        """Address of the backup designated router."""
    @bdr.setter
    def bdr(self, value: AddressLike) -> None: ...
    @property
    def neighbor(self) -> OspfNeighborTable | None:
        """Neighbours heard on the interface."""
    @neighbor.setter
    def neighbor(self, value: OspfNeighborTable | None) -> None: ...
    neighbors = neighbor
    @property
    def link_scope_lsas(self) -> LinkScopeLsasTable | None:
        """Link-state databases of the interface, one row for each LS type."""
    @link_scope_lsas.setter
    def link_scope_lsas(self, value: LinkScopeLsasTable | None) -> None: ...
    @property
    def multi_topology(self) -> MultiTopologyTable | None:
        """The interface's topology names."""
    @multi_topology.setter
    def multi_topology(self, value: MultiTopologyTable | None) -> None: ...
    multi_topologies = multi_topology
    @property
    def priority(self) -> int:
        """The router priority; 0 never becomes designated router."""
    @priority.setter
    def priority(self, value: int) -> None: ...


class OspfArea(Structure):
    """An area."""
    @property
    def area_id(self) -> int:
        """The area's ID as a number; key of the table."""
    @area_id.setter
    def area_id(self, value: Number) -> None: ...
    @property
    def interfaces(self) -> OspfInterfaceTable | None:
        """The area's interfaces."""
    @interfaces.setter
    def interfaces(self, value: OspfInterfaceTable | None) -> None: ...
    @property
    def area_scope_lsas(self) -> AreaScopeLsasTable | None:
        """Link-state databases of the area."""
    @area_scope_lsas.setter
    def area_scope_lsas(self, value: AreaScopeLsasTable | None) -> None: ...


class OspfInstance(Structure):
    """A routing process of one address family."""
    @property
    def af(self) -> AddressFamily:
        """The instance's address family."""
    @af.setter
    def af(self, value: AddressFamily | int | str) -> None: ...
    @property
    def router_id(self) -> int:
        """The instance's router ID as a number."""
    @router_id.setter
    def router_id(self, value: Number) -> None: ...
    @property
    def area(self) -> OspfAreaTable | None:
        """The instance's areas."""
    @area.setter
    def area(self, value: OspfAreaTable | None) -> None: ...
    areas = area
    @property
    def link_scope_lsas(self) -> LinkScopeLsasTable | None:
        """Link-state databases of the instance, one row for each LS type."""
    @link_scope_lsas.setter
    def link_scope_lsas(self, value: LinkScopeLsasTable | None) -> None: ...
    @property
    def multi_topology(self) -> MultiTopologyTable | None:
        """The instance's topology names."""
    @multi_topology.setter
    def multi_topology(self, value: MultiTopologyTable | None) -> None: ...
    multi_topologies = multi_topology


class Ospf(Structure):
    """The root of the model."""
    @property
    def singleton_id(self) -> int:
        """Key of a table that is meant to hold one row."""
    @singleton_id.setter
    def singleton_id(self, value: Number) -> None: ...
    @property
    def op_mode(self) -> OspfOperationMode:
        """How the address families run beside each other."""
    @op_mode.setter
    def op_mode(self, value: OspfOperationMode | int | str) -> None: ...
    @property
    def instance(self) -> OspfInstanceTable | None:
        """The instances, one for each address family."""
    @instance.setter
    def instance(self, value: OspfInstanceTable | None) -> None: ...
    instances = instance


class OspfInstanceRev1Key(Structure):
    """What identifies an instance in the revised form."""
    @property
    def af(self) -> AddressFamily:
        """The instance's address family."""
    @af.setter
    def af(self, value: AddressFamily | int | str) -> None: ...
    @property
    def router_id(self) -> int:
        """The instance's router ID as a number."""
    @router_id.setter
    def router_id(self, value: Number) -> None: ...


class OspfInstanceRev1(Structure):
    """A routing process of one address family and router ID, both of which stand in its key."""
    @property
    def area(self) -> OspfAreaTable | None:
        """The instance's areas."""
    @area.setter
    def area(self, value: OspfAreaTable | None) -> None: ...
    areas = area
    @property
    def link_scope_lsas(self) -> LinkScopeLsasTable | None:
        """Link-state databases of the instance, one row for each LS type."""
    @link_scope_lsas.setter
    def link_scope_lsas(self, value: LinkScopeLsasTable | None) -> None: ...
    @property
    def multi_topology(self) -> MultiTopologyTable | None:
        """The instance's topology names."""
    @multi_topology.setter
    def multi_topology(self, value: MultiTopologyTable | None) -> None: ...
    multi_topologies = multi_topology


class OspfRev1(Structure):
    """The root of the model, revised form."""
    @property
    def singleton_id(self) -> int:
        """Key of a table that is meant to hold one row."""
    @singleton_id.setter
    def singleton_id(self, value: Number) -> None: ...
    @property
    def op_mode(self) -> OspfOperationMode:
        """How the address families run beside each other."""
    @op_mode.setter
    def op_mode(self, value: OspfOperationMode | int | str) -> None: ...
    @property
    def instance(self) -> OspfInstanceRev1Table | None:
        """The instances, one for each address family and router ID."""
    @instance.setter
    def instance(self, value: OspfInstanceRev1Table | None) -> None: ...
    instances = instance


class Ospfv2UnknownSubTlvRow(Row, Ospfv2UnknownSubTlv):
    """Sub-TLVs that no field covers, by type."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> Ospfv2UnknownSubTlvTable: ...


class Ospfv2UnknownSubTlvTable(Table):
    """Sub-TLVs that no field covers, by type."""
    def __getitem__(self, key: Any) -> Ospfv2UnknownSubTlvRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv2UnknownSubTlvRow]: ...
    def values(self) -> Iterator[Ospfv2UnknownSubTlvRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv2UnknownSubTlvRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv2UnknownSubTlvRow: ...


class Ospfv2UnknownTlvRow(Row, Ospfv2UnknownTlv):
    """TLVs that no field covers, by type."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> Ospfv2UnknownTlvTable: ...


class Ospfv2UnknownTlvTable(Table):
    """TLVs that no field covers, by type."""
    def __getitem__(self, key: Any) -> Ospfv2UnknownTlvRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv2UnknownTlvRow]: ...
    def values(self) -> Iterator[Ospfv2UnknownTlvRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv2UnknownTlvRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv2UnknownTlvRow: ...


class Ospfv2ExternalRow(Row, Ospfv2External):
    """Entries of an external LSA, by topology."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> Ospfv2ExternalTable: ...


class Ospfv2ExternalTable(Table):
    """Entries of an external LSA, by topology."""
    def __getitem__(self, key: Any) -> Ospfv2ExternalRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv2ExternalRow]: ...
    def values(self) -> Iterator[Ospfv2ExternalRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv2ExternalRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv2ExternalRow: ...


class Ospfv2TopologyRow(Row, Ospfv2Topology):
    """Metrics, by topology."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> Ospfv2TopologyTable: ...


class Ospfv2TopologyTable(Table):
    """Metrics, by topology."""
    def __getitem__(self, key: Any) -> Ospfv2TopologyRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv2TopologyRow]: ...
    def values(self) -> Iterator[Ospfv2TopologyRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv2TopologyRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv2TopologyRow: ...


class Ospfv2LinkRow(Row, Ospfv2Link):
    """Links of an OSPFv2 router LSA."""
    @property
    def key(self) -> Ospfv2LinkKey: ...
    @property
    def table(self) -> Ospfv2LinkTable: ...


class Ospfv2LinkTable(Table):
    """Links of an OSPFv2 router LSA."""
    def __getitem__(self, key: Any) -> Ospfv2LinkRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv2LinkRow]: ...
    def values(self) -> Iterator[Ospfv2LinkRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv2LinkRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv2LinkRow: ...


class Ospfv3LinkRow(Row, Ospfv3Link):
    """Links of an OSPFv3 router LSA."""
    @property
    def key(self) -> Ospfv3LinkKey: ...
    @property
    def table(self) -> Ospfv3LinkTable: ...


class Ospfv3LinkTable(Table):
    """Links of an OSPFv3 router LSA."""
    def __getitem__(self, key: Any) -> Ospfv3LinkRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv3LinkRow]: ...
    def values(self) -> Iterator[Ospfv3LinkRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv3LinkRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv3LinkRow: ...


class Ospfv3PrefixListRow(Row, Ospfv3PrefixList):
    """Prefixes of a link LSA."""
    @property
    def key(self) -> str: ...
    @property
    def table(self) -> Ospfv3PrefixListTable: ...


class Ospfv3PrefixListTable(Table):
    """Prefixes of a link LSA."""
    def __getitem__(self, key: Any) -> Ospfv3PrefixListRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv3PrefixListRow]: ...
    def values(self) -> Iterator[Ospfv3PrefixListRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv3PrefixListRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv3PrefixListRow: ...


class Ospfv3IaPrefixListRow(Row, Ospfv3PrefixList):
    """Prefixes of an intra-area prefix LSA."""
    @property
    def key(self) -> str: ...
    @property
    def table(self) -> Ospfv3IaPrefixListTable: ...


class Ospfv3IaPrefixListTable(Table):
    """Prefixes of an intra-area prefix LSA."""
    def __getitem__(self, key: Any) -> Ospfv3IaPrefixListRow: ...
    def rows(self, source: int = 1) -> Iterator[Ospfv3IaPrefixListRow]: ...
    def values(self) -> Iterator[Ospfv3IaPrefixListRow]: ...  # type: ignore[override]
    def first(self) -> Ospfv3IaPrefixListRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> Ospfv3IaPrefixListRow: ...


class MultiTopologyRow(Row, MultiTopology):
    """Topologies, by name."""
    @property
    def key(self) -> str: ...
    @property
    def table(self) -> MultiTopologyTable: ...


class MultiTopologyTable(Table):
    """Topologies, by name."""
    def __getitem__(self, key: Any) -> MultiTopologyRow: ...
    def rows(self, source: int = 1) -> Iterator[MultiTopologyRow]: ...
    def values(self) -> Iterator[MultiTopologyRow]: ...  # type: ignore[override]
    def first(self) -> MultiTopologyRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> MultiTopologyRow: ...


class LinkScopeLsaRow(Row, LinkScopeLsa):
    """LSAs of link scope."""
    @property
    def key(self) -> LinkScopeLsaKey: ...
    @property
    def table(self) -> LinkScopeLsaTable: ...


class LinkScopeLsaTable(Table):
    """LSAs of link scope."""
    def __getitem__(self, key: Any) -> LinkScopeLsaRow: ...
    def rows(self, source: int = 1) -> Iterator[LinkScopeLsaRow]: ...
    def values(self) -> Iterator[LinkScopeLsaRow]: ...  # type: ignore[override]
    def first(self) -> LinkScopeLsaRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> LinkScopeLsaRow: ...


class AreaScopeLsaRow(Row, AreaScopeLsa):
    """LSAs of area scope."""
    @property
    def key(self) -> AreaScopeLsaKey: ...
    @property
    def table(self) -> AreaScopeLsaTable: ...


class AreaScopeLsaTable(Table):
    """LSAs of area scope."""
    def __getitem__(self, key: Any) -> AreaScopeLsaRow: ...
    def rows(self, source: int = 1) -> Iterator[AreaScopeLsaRow]: ...
    def values(self) -> Iterator[AreaScopeLsaRow]: ...  # type: ignore[override]
    def first(self) -> AreaScopeLsaRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> AreaScopeLsaRow: ...


class AreaScopeLsasRow(Row, AreaScopeLsas):
    """Groups of area-scope LSAs."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> AreaScopeLsasTable: ...


class AreaScopeLsasTable(Table):
    """Groups of area-scope LSAs."""
    def __getitem__(self, key: Any) -> AreaScopeLsasRow: ...
    def rows(self, source: int = 1) -> Iterator[AreaScopeLsasRow]: ...
    def values(self) -> Iterator[AreaScopeLsasRow]: ...  # type: ignore[override]
    def first(self) -> AreaScopeLsasRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> AreaScopeLsasRow: ...


class LinkScopeLsasRow(Row, LinkScopeLsas):
    """Databases, by LS type."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> LinkScopeLsasTable: ...


class LinkScopeLsasTable(Table):
    """Databases, by LS type."""
    def __getitem__(self, key: Any) -> LinkScopeLsasRow: ...
    def rows(self, source: int = 1) -> Iterator[LinkScopeLsasRow]: ...
    def values(self) -> Iterator[LinkScopeLsasRow]: ...  # type: ignore[override]
    def first(self) -> LinkScopeLsasRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> LinkScopeLsasRow: ...


class OspfStaticNeighborRow(Row, OspfStaticNeighbor):
    """Configured neighbours, by address."""
    @property
    def key(self) -> Address | None: ...
    @property
    def table(self) -> OspfStaticNeighborTable: ...


class OspfStaticNeighborTable(Table):
    """Configured neighbours, by address."""
    def __getitem__(self, key: Any) -> OspfStaticNeighborRow: ...
    def rows(self, source: int = 1) -> Iterator[OspfStaticNeighborRow]: ...
    def values(self) -> Iterator[OspfStaticNeighborRow]: ...  # type: ignore[override]
    def first(self) -> OspfStaticNeighborRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfStaticNeighborRow: ...


class OspfNeighborRow(Row, OspfNeighbor):
    """Neighbours, by router ID."""
    @property
    def key(self) -> Address | None: ...
    @property
    def table(self) -> OspfNeighborTable: ...


class OspfNeighborTable(Table):
    """Neighbours, by router ID."""
    def __getitem__(self, key: Any) -> OspfNeighborRow: ...
    def rows(self, source: int = 1) -> Iterator[OspfNeighborRow]: ...
    def values(self) -> Iterator[OspfNeighborRow]: ...  # type: ignore[override]
    def first(self) -> OspfNeighborRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfNeighborRow: ...


class OspfInterfaceRow(Row, OspfInterface):
    """Interfaces, by name."""
    @property
    def key(self) -> str: ...
    @property
    def table(self) -> OspfInterfaceTable: ...


class OspfInterfaceTable(Table):
    """Interfaces, by name."""
    def __getitem__(self, key: Any) -> OspfInterfaceRow: ...
    def rows(self, source: int = 1) -> Iterator[OspfInterfaceRow]: ...
    def values(self) -> Iterator[OspfInterfaceRow]: ...  # type: ignore[override]
    def first(self) -> OspfInterfaceRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfInterfaceRow: ...


class OspfAreaRow(Row, OspfArea):
    """Areas, by ID."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> OspfAreaTable: ...


class OspfAreaTable(Table):
    """Areas, by ID."""
    def __getitem__(self, key: Any) -> OspfAreaRow: ...
    def rows(self, source: int = 1) -> Iterator[OspfAreaRow]: ...
    def values(self) -> Iterator[OspfAreaRow]: ...  # type: ignore[override]
    def first(self) -> OspfAreaRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfAreaRow: ...


class OspfInstanceRow(Row, OspfInstance):
    """Instances, by address family."""
    @property
    def key(self) -> AddressFamily: ...
    @property
    def table(self) -> OspfInstanceTable: ...


class OspfInstanceTable(Table):
    """Instances, by address family."""
    def __getitem__(self, key: Any) -> OspfInstanceRow: ...
    def rows(self, source: int = 1) -> Iterator[OspfInstanceRow]: ...
    def values(self) -> Iterator[OspfInstanceRow]: ...  # type: ignore[override]
    def first(self) -> OspfInstanceRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfInstanceRow: ...


class OspfRow(Row, Ospf):
    """The root; meant to hold one row, which nothing enforces."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> OspfTable: ...


class OspfTable(Table):
    """The root; meant to hold one row, which nothing enforces."""
    def __getitem__(self, key: Any) -> OspfRow: ...
    def rows(self, source: int = 1) -> Iterator[OspfRow]: ...
    def values(self) -> Iterator[OspfRow]: ...  # type: ignore[override]
    def first(self) -> OspfRow | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfRow: ...


class OspfInstanceRev1Row(Row, OspfInstanceRev1):
    """Instances, by address family and router ID."""
    @property
    def key(self) -> OspfInstanceRev1Key: ...
    @property
    def table(self) -> OspfInstanceRev1Table: ...


class OspfInstanceRev1Table(Table):
    """Instances, by address family and router ID."""
    def __getitem__(self, key: Any) -> OspfInstanceRev1Row: ...
    def rows(self, source: int = 1) -> Iterator[OspfInstanceRev1Row]: ...
    def values(self) -> Iterator[OspfInstanceRev1Row]: ...  # type: ignore[override]
    def first(self) -> OspfInstanceRev1Row | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfInstanceRev1Row: ...


class OspfRev1Row(Row, OspfRev1):
    """The root in its revised form; meant to hold one row, which nothing enforces."""
    @property
    def key(self) -> int: ...
    @property
    def table(self) -> OspfRev1Table: ...


class OspfRev1Table(Table):
    """The root in its revised form; meant to hold one row, which nothing enforces."""
    def __getitem__(self, key: Any) -> OspfRev1Row: ...
    def rows(self, source: int = 1) -> Iterator[OspfRev1Row]: ...
    def values(self) -> Iterator[OspfRev1Row]: ...  # type: ignore[override]
    def first(self) -> OspfRev1Row | None: ...
    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, *,
            key: Any = None, source: int = 1, **more: Any) -> OspfRev1Row: ...
