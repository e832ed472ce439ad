"""What reading tables costs in Python, in CPU seconds; no test. PYTHONPATH and
OSPF_HARBOR_LIBRARIES name the build, as docs/python.md says.

    measure.py [ROWS]
"""
import sys
import time

import ospf_harbor


# As read_fields_in_c of the benchmarks has them.
TWENTY = ('cost', 'hello_interval', 'dead_interval', 'retransmit_interval', 'transmit_delay',
          'hello_timer', 'wait_timer', 'priority', 'passive', 'enable', 'lls', 'bfd', 'mtu_ignore',
          'node_flag', 'demand_circuit', 'prefix_suppression', 'network_type', 'name', 'state', 'dr')


def took(what, rows, call):
    begin = time.process_time()
    call()
    used = time.process_time() - begin
    print(f'{what:44} {used:8.3f} s {used / rows * 1e6:8.2f} us a row')


def measure(rows):
    database = ospf_harbor.Database()
    areas = database.table('ospf_area', 'areas', create=True)
    neighbors = database.table('ospf_neighbor', 'neighbors', create=True)
    interfaces = database.table('ospf_interface', 'interfaces', create=True)
    with database.write():
        took('areas: add()', rows, lambda: [areas.add(area_id=number) for number in range(rows)])
        for number in range(rows):
            neighbors.add(neighbor_id=f'10.{number >> 16}.{number >> 8 & 255}.{number & 255}')
            interfaces.add(name=f'eth{number}', cost=number & 65535)
    with database.read():
        took('areas: to_dicts()', rows, areas.to_dicts)
        took('neighbors: to_dicts()', rows, neighbors.to_dicts)
        took('interfaces: to_dicts()', rows, interfaces.to_dicts)
        took('neighbors: row.to_dict() for each', rows,
             lambda: [row.to_dict() for row in neighbors.values()])
        took('areas: a field of each row', rows, lambda: [row.area_id for row in areas.values()])
        took('interfaces: 20 fields of each row', rows,
             lambda: [[getattr(row, name) for name in TWENTY] for row in interfaces.values()])
        took('areas: the first look-up', rows, lambda: areas[1])
    took('areas: a field of each row, no lock held', rows,
         lambda: [row.area_id for row in areas.values()])


if __name__ == '__main__':
    measure(int(sys.argv[1]) if len(sys.argv) > 1 else 100_000)
