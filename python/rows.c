/* Objects and whole tables as dictionaries, for the Python package: ospf_harbor._rows. A call
 * through ctypes for each field would take most of the time of reading a table.
 *
 * What is read, and from where, the package tells once for each type (plan), made of the model's
 * places of fields. The caller holds the lock of the database, has looked that what it names is
 * still there, and passes addresses; nothing here changes anything but an error word. */
#define Py_LIMITED_API 0x030B0000
#define PY_SSIZE_T_CLEAN
#include <Python.h>
#include <kelp/primitive_layout.h>
#include <kelp/table.h>
#include <string.h>

/* The numbers are those of _objects.py. */
enum kind {
  KIND_U8,
  KIND_U16,
  KIND_U32,
  KIND_REAL,
  KIND_BOOLEAN,
  KIND_TEXT,
  KIND_ADDRESS, /* extra: makes an address of 48 bytes */
  KIND_MEMBER,  /* a u32; extra: members by value */
  KIND_FLAGS,   /* a u8; extra: a list of 256 */
  KIND_OBJECT,  /* extra: its plan */
};

enum holding { IN_PLACE, ARRAY, ARM };

typedef struct piece {
  PyObject *name;
  PyObject *extra;
  int kind;
  int holding;
  int since;
  uint32_t offset;
  uint32_t counter;  /* of an array: where its count is */
  uint32_t selector; /* of an arm: the value that selects it */
} piece;

typedef struct plan {
  Py_ssize_t count;
  long selector; /* of a choice: where its selector's value is, else -1 */
  piece pieces[];
} plan;

static const char plan_name[] = "ospf_harbor.plan";
static PyObject *addresses; /* by their bytes: the same ones come again and again */
enum { MOST_ADDRESSES = 1 << 16 };

static void free_plan(PyObject *capsule) {
  plan *freed = PyCapsule_GetPointer(capsule, plan_name);
  for (Py_ssize_t at = 0; at < freed->count; ++at) {
    Py_XDECREF(freed->pieces[at].name);
    Py_XDECREF(freed->pieces[at].extra);
  }
  PyMem_Free(freed);
}

static PyObject *make_plan(PyObject *module, PyObject *arguments) {
  (void)module;
  PyObject *fields = NULL;
  long selector = -1;
  if (!PyArg_ParseTuple(arguments, "O!l", &PyTuple_Type, &fields, &selector)) return NULL;
  const Py_ssize_t count = PyTuple_Size(fields);
  plan *made = PyMem_Calloc(1, sizeof(plan) + (size_t)count * sizeof(piece));
  if (made == NULL) return PyErr_NoMemory();
  made->count = count;
  made->selector = selector;
  PyObject *capsule = PyCapsule_New(made, plan_name, free_plan);
  if (capsule == NULL) {
    PyMem_Free(made);
    return NULL;
  }
  for (Py_ssize_t at = 0; at < count; ++at) {
    piece *each = &made->pieces[at];
    if (!PyArg_ParseTuple(PyTuple_GetItem(fields, at), "OiiiIIIO", &each->name, &each->kind,
                          &each->holding, &each->since, &each->offset, &each->counter,
                          &each->selector, &each->extra)) {
      each->name = each->extra = NULL; /* borrowed so far */
      Py_DECREF(capsule);
      return NULL;
    }
    Py_INCREF(each->name);
    Py_INCREF(each->extra);
  }
  return capsule;
}

static PyObject *text_at(const kelp_vstring *text) {
  return PyUnicode_DecodeUTF8(text->text != NULL ? text->text : "", text->length,
                              "surrogateescape");
}

static PyObject *address_at(const ip_address *address, PyObject *make) {
  if (address->family == KELP_AF_UNSET) Py_RETURN_NONE;
  /* The header differs from place to place. */
  char bytes[sizeof(ip_address)] = {0};
  const size_t header = offsetof(ip_address, family);
  memcpy(bytes + header, (const char *)address + header, sizeof(bytes) - header);
  PyObject *key = PyBytes_FromStringAndSize(bytes, sizeof(bytes));
  if (key == NULL) return NULL;
  PyObject *value = PyDict_GetItemWithError(addresses, key);
  Py_XINCREF(value);
  if (value == NULL && !PyErr_Occurred()) {
    value = PyObject_CallFunctionObjArgs(make, key, NULL);
    if (value != NULL) {
      if (PyDict_Size(addresses) >= MOST_ADDRESSES) PyDict_Clear(addresses);
      if (PyDict_SetItem(addresses, key, value) != 0) Py_CLEAR(value);
    }
  }
  Py_DECREF(key);
  return value;
}

static PyObject *member_at(uint32_t number, PyObject *members) {
  PyObject *key = PyLong_FromUnsignedLong(number);
  if (key == NULL) return NULL;
  PyObject *member = PyDict_GetItemWithError(members, key);
  if (member == NULL) return PyErr_Occurred() ? (Py_DECREF(key), NULL) : key;
  Py_INCREF(member);
  Py_DECREF(key);
  return member;
}

static PyObject *read_object(const plan *with, const char *object);

static PyObject *value_at(const piece *field, const char *place) {
  switch (field->kind) {
    case KIND_U8:
      return PyLong_FromLong(*(const uint8_t *)place);
    case KIND_U16:
      return PyLong_FromLong(*(const uint16_t *)(const void *)place);
    case KIND_U32:
      return PyLong_FromUnsignedLong(*(const uint32_t *)(const void *)place);
    case KIND_REAL:
      return PyFloat_FromDouble(*(const double *)(const void *)place);
    case KIND_BOOLEAN:
      return PyBool_FromLong(*(const uint32_t *)(const void *)place != 0);
    case KIND_TEXT:
      return text_at((const kelp_vstring *)(const void *)place);
    case KIND_ADDRESS:
      return address_at((const ip_address *)(const void *)place, field->extra);
    case KIND_MEMBER:
      return member_at(*(const uint32_t *)(const void *)place, field->extra);
    case KIND_FLAGS: {
      PyObject *flags = PyList_GetItem(field->extra, *(const uint8_t *)place);
      Py_XINCREF(flags);
      return flags;
    }
    default:
      return read_object(PyCapsule_GetPointer(field->extra, plan_name), place);
  }
}

static size_t size_of(int kind) {
  switch (kind) {
    case KIND_U8:
      return sizeof(uint8_t);
    case KIND_U16:
      return sizeof(uint16_t);
    case KIND_REAL:
      return sizeof(double);
    case KIND_ADDRESS:
      return sizeof(ip_address);
    default:
      return sizeof(uint32_t);
  }
}

/* Octets as bytes, anything else as a list. */
static PyObject *array_at(const piece *field, const char *object) {
  const char *elements = *(char *const *)(const void *)(object + field->offset);
  const uint32_t count =
      elements != NULL ? *(const uint32_t *)(const void *)(object + field->counter) : 0;
  if (field->kind == KIND_U8) return PyBytes_FromStringAndSize(elements, count);
  PyObject *list = PyList_New(0);
  for (uint32_t at = 0; list != NULL && at < count; ++at) {
    PyObject *value = value_at(field, elements + at * size_of(field->kind));
    if (value == NULL || PyList_Append(list, value) != 0) Py_CLEAR(list);
    Py_XDECREF(value);
  }
  return list;
}

static int is_there(const plan *with, const piece *field, const char *object) {
  if (field->since > ((const kelp_object_header *)(const void *)object)->variant) return 0;
  if (field->holding != ARM) return 1;
  return *(const uint32_t *)(const void *)(object + with->selector) == field->selector &&
         *(char *const *)(const void *)(object + field->offset) != NULL;
}

/* The fields that the object's variant holds; of a choice what is selected. */
static PyObject *read_object(const plan *with, const char *object) {
  PyObject *fields = with != NULL ? PyDict_New() : NULL;
  for (Py_ssize_t at = 0; fields != NULL && at < with->count; ++at) {
    const piece *field = &with->pieces[at];
    if (!is_there(with, field, object)) continue;
    const char *place = object + field->offset;
    PyObject *value =
        field->holding == ARRAY ? array_at(field, object)
        : field->holding == ARM ? value_at(field, *(char *const *)(const void *)place)
                                : value_at(field, place);
    if (value == NULL || PyDict_SetItem(fields, field->name, value) != 0) Py_CLEAR(fields);
    Py_XDECREF(value);
  }
  return fields;
}

static PyObject *read_one(PyObject *module, PyObject *arguments) {
  (void)module;
  PyObject *capsule = NULL;
  unsigned long long object = 0;
  if (!PyArg_ParseTuple(arguments, "OK", &capsule, &object)) return NULL;
  const plan *with = PyCapsule_GetPointer(capsule, plan_name);
  return with != NULL ? read_object(with, (const char *)(uintptr_t)object) : NULL;
}

/* A row: the fields of its object, and those of its key object as "key". */
static PyObject *read_row(const kelp_record *record, const plan *data, const plan *key) {
  const char *object = record->objects[key != NULL ? 1 : 0];
  PyObject *fields = object != NULL ? read_object(data, object) : PyDict_New();
  if (fields == NULL || key == NULL || record->objects[0] == NULL) return fields;
  PyObject *keys = read_object(key, record->objects[0]);
  if (keys == NULL || PyDict_SetItemString(fields, "key", keys) != 0) Py_CLEAR(fields);
  Py_XDECREF(keys);
  return fields;
}

typedef kelp_record *first_step(kelp_handle *, uint32_t, kelp_table *, uint32_t, uint32_t *);
typedef kelp_record *next_step(kelp_handle *, uint32_t, kelp_table *, kelp_record *,
                               uint32_t source, uint32_t source_alone, uint32_t skip_pending,
                               uint32_t same_key, uint32_t *);

static PyObject *read_rows(PyObject *module, PyObject *arguments) {
  (void)module;
  unsigned long long first = 0, next = 0, handle = 0, table = 0, err = 0;
  unsigned source = 0;
  PyObject *data = NULL, *key = NULL, *records = NULL;
  if (!PyArg_ParseTuple(arguments, "KKKKKIOOO", &first, &next, &handle, &table, &err, &source,
                        &data, &key, &records)) {
    return NULL;
  }
  const plan *of_data = PyCapsule_GetPointer(data, plan_name);
  const plan *of_key = key != Py_None ? PyCapsule_GetPointer(key, plan_name) : NULL;
  if (PyErr_Occurred()) return NULL;
  kelp_handle *with = (kelp_handle *)(uintptr_t)handle;
  kelp_table *of = (kelp_table *)(uintptr_t)table;
  uint32_t *word = (uint32_t *)(uintptr_t)err;
  next_step *step = (next_step *)(uintptr_t)next;
  /* Nothing made here is garbage, so nothing is looked for while it grows. */
  const int collects = PyGC_Disable();
  PyObject *rows = PyList_New(0);
  kelp_record *record = ((first_step *)(uintptr_t)first)(with, 0, of, source, word);
  while (rows != NULL && record != NULL) {
    PyObject *row = read_row(record, of_data, of_key);
    if (row == NULL || PyList_Append(rows, row) != 0) Py_CLEAR(rows);
    Py_XDECREF(row);
    if (rows != NULL && records != Py_None) {
      PyObject *address = PyLong_FromVoidPtr(record);
      if (address == NULL || PyList_Append(records, address) != 0) Py_CLEAR(rows);
      Py_XDECREF(address);
    }
    record = step(with, 0, of, record, source, 1, 1, 0, word);
  }
  if (collects) PyGC_Enable();
  return rows;
}

static PyMethodDef functions[] = {
    {"plan", make_plan, METH_VARARGS, "How objects of a type are read."},
    {"read", read_one, METH_VARARGS, "The object at an address as a dictionary."},
    {"rows", read_rows, METH_VARARGS, "The rows of a table as dictionaries."},
    {NULL, NULL, 0, NULL}};

static struct PyModuleDef definition = {
    PyModuleDef_HEAD_INIT, "_rows", "Objects and tables as dictionaries.", -1, functions, NULL,
    NULL, NULL, NULL};

PyMODINIT_FUNC PyInit__rows(void) {
  addresses = PyDict_New();
  return addresses != NULL ? PyModule_Create(&definition) : NULL;
}
