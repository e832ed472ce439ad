#!/usr/bin/python3
"""The interfaces of a store that cost most, for each area: dear_links.py STORE.

Runs beside whoever fills the store. The rows are read under one lock, so that they belong together.
"""
import sys

import ospf_harbor


def dear_links(path, most=3):
    """(family, area, interface, cost) of the interfaces that cost most in their area."""
    found = []
    with ospf_harbor.Database(path, create=False) as store, store.read():
        for (family, _), instance in store.instances.items():
            for area in instance.areas.values():
                costs = [(interface['cost'], interface['name'])
                         for interface in area.interfaces.to_dicts()]
                for cost, name in sorted(costs, reverse=True)[:most]:
                    found.append((family.name, area.area_id, name, cost))
    return found


if __name__ == '__main__':
    try:
        for family, area, name, cost in dear_links(sys.argv[1]):
            print(f'{family} area {area}: {name} costs {cost}')
    except ospf_harbor.Error as why:
        sys.exit(f'dear_links: {why}')
