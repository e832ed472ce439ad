"""The operational data model of OSPF in Python.

    import ospf_harbor

    with ospf_harbor.Database() as database:
        areas = database.table('ospf_area', 'areas', create=True)
        area = areas.add(area_id='0.0.0.51')
        area.add_table('interfaces').add(name='eth0', cost=10)
        print(areas[51].interfaces['eth0'])

Every type of the model is a class (`OspfArea`), every table a mapping of rows by key
(`OspfAreaTable`), every enumeration an enum and every flag set a Flag; docs/python.md tells the
rest. What fails raises an `Error` with a code, a text and a field.
"""
from ._database import Database, Handle, Lock
from ._errors import (BadImage, BadType, BadValue, Closed, Error, Foreign, Gone, LockNeeded,
                      NoSuchKey, WrongThread)
from ._feeds import Change, ChangeKind, Feed
from ._model import MODEL
from ._objects import Structure
from ._row import Row
from ._tables import Table
from ._tool import check, diff, load_capture, load_frr, routes
from ._types import *
from ._values import Enumeration, Flags

__all__ = ['BadImage', 'BadType', 'BadValue', 'Change', 'ChangeKind', 'Closed', 'Database',
           'Enumeration', 'Error', 'Feed', 'Flags', 'Foreign', 'Gone', 'Handle', 'Lock',
           'LockNeeded', 'MODEL', 'NoSuchKey', 'Row', 'Structure', 'Table', 'WrongThread', 'check',
           'diff', 'load_capture', 'load_frr', 'routes', *MODEL.classes]
