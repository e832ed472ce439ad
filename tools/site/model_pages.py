"""The model as pages: the tree of tables, and each type and table with what is known of its fields.

What the schema does not hold stands in fields.toml: where a type, or one of its fields, is specified,
and who fills it. A type without a row there, or a row without a type, is an error.
"""
import json
import re
import sys
import tomllib

import pieces

INDEX = 'model/index'
UNITS = [(r'\bin seconds\b', 'seconds'), (r'\bin octets\b', 'octets'), (r'\boctets\b', 'octets'),
         (r'producer chooses the unit', "the producer's"), (r'\bas text\b', 'text'),
         (r'as free text', 'text')]
WHO = {'capture': '<code>load capture</code>, <code>collect</code>',
       'answers': '<code>load frr</code>', 'programs': 'programs'}


def unit_of(field):
    for pattern, unit in UNITS:
        if re.search(pattern, field['meaning']):
            return unit
    named = {'metric': 'cost', 'cost': 'cost', 'te_metric': 'cost', 'hops': 'hops'}
    return named.get(field['name'], '')


class Facts:
    """fields.toml, held against the model."""

    def __init__(self, path, model):
        self.types = tomllib.loads(path.read_text())
        structures = {each['name']: each for each in model['structures']}
        for name in structures.keys() ^ self.types.keys():
            where = 'the model' if name in structures else path.name
            sys.exit(f'{path}: found {name} in {where} alone, expected it in both')
        for name, facts in self.types.items():
            fields = {field['name'] for field in structures[name]['fields']}
            for field in facts.get('field', {}).keys() - fields:
                sys.exit(f'{path}: found {name}.{field}, which the model does not have')

    def of(self, structure, field):
        """Where the field is specified, and who fills it."""
        facts = self.types[structure]
        own = facts.get('field', {}).get(field, {})
        filled = own.get('filled', facts['filled'])
        return own.get('rfc', facts['rfc']), ', '.join(WHO[each] for each in filled)


class Pages:
    def __init__(self, site, model, facts):
        self.site, self.model, self.facts = site, model, facts
        kinds = ('structures', 'enumerations', 'flag_sets', 'tables')
        self.kinds = {each['name']: kind for kind in kinds for each in model[kind]}
        self.used_by = {}
        for structure in model['structures']:
            for field in structure['fields']:
                self.used_by.setdefault(field['type'], []).append((structure['name'], field['name']))

    def link(self, name):
        """A type by its name; what is no type of the model as it is."""
        return (f'<a href="{name}.html"><code>{name}</code></a>' if name in self.kinds
                else f'<code>{name}</code>')

    def uses(self, name):
        users = [f'<a href="{owner}.html#{field}"><code>{owner}.{field}</code></a>'
                 for owner, field in self.used_by.get(name, [])]
        return f'<p>Used by {", ".join(users)}.</p>' if users else ''

    def write_page(self, each, kind, body):
        name = each['name']
        address = f'model/{name}.html'
        head = (f'<h1><code>{name}</code></h1><p class="kind">{kind}</p>'
                f'<p>{pieces.escaped(each["meaning"])}</p>')
        header = ('tables-' if kind == 'table' else '') + name
        foot = (f'<p>In C: <a href="../c/ospf_harbor_oper-{header}.html">'
                f'<code>&lt;ospf_harbor_oper/{header.replace("-", "/")}.h&gt;</code></a>.</p>')
        self.site.write(address, name, head + body + self.uses(name) + foot)
        self.site.find(name, address, kind, each['meaning'])

    def structure(self, each):
        variants = ''.join(f'<tr><td>{number}</td><td>{used}</td></tr>'
                           for number, used in enumerate(each['used']))
        rows = []
        for field in each['fields']:
            rfc, filled = self.facts.of(each['name'], field['name'])
            form = field['form'] + (f' of {self.link(field["counter"])} elements'
                                    if 'counter' in field else '')
            if 'selector' in field:
                form += f' {field["selector"]}'
            rows.append(
                f'<tr id="{field["name"]}"><td><code>{field["name"]}</code></td>'
                f'<td>{self.link(field["type"])}<br><span class="kind">{form}</span></td>'
                f'<td>{pieces.escaped(field["meaning"])}</td><td>{unit_of(field)}</td>'
                f'<td>{pieces.escaped(rfc)}</td><td>{filled}</td><td>{field["since"]}</td>'
                f'<td>{field["offset"]}, {field["width"]}</td></tr>')
            self.site.find(f'{each["name"]}.{field["name"]}',
                           f'model/{each["name"]}.html#{field["name"]}', 'field', field['meaning'])
        body = ('<table class="fields"><thead><tr><th>Field</th><th>Type</th><th>Meaning</th>'
                '<th>Unit</th><th>Specified in</th><th>Filled by</th><th>Since variant</th>'
                '<th>Place, bytes</th></tr></thead><tbody>' + ''.join(rows) + '</tbody></table>'
                f'<h2 id="size">Size</h2><p>{each["size"]} bytes, {each["tracked_size"]} with state '
                'bytes.</p><table><thead><tr><th>Variant</th><th>Bytes that its fields reach</th></tr>'
                f'</thead><tbody>{variants}</tbody></table>')
        kind = 'choice' if 'selected_by' in each else 'object'
        self.write_page(each, kind, body)

    def members(self, each, kind, word):
        rows = ''.join(
            f'<tr id="{member["name"]}"><td><code>{member["name"]}</code></td>'
            f'<td>{member[word]}</td><td>{pieces.escaped(member["meaning"])}</td>'
            f'<td>{member["since"]}</td></tr>' for member in each['members'])
        for member in each['members']:
            self.site.find(member['name'], f'model/{each["name"]}.html#{member["name"]}', kind,
                           member['meaning'])
        self.write_page(each, kind, f'<table><thead><tr><th>Name</th><th>{word.capitalize()}</th>'
                        f'<th>Meaning</th><th>Since variant</th></tr></thead><tbody>{rows}</tbody>'
                        '</table>')

    def table(self, each):
        key = (f'the field <a href="{each["record"]}.html#{each["key_field"]}">'
               f'<code>{each["key_field"]}</code></a>' if 'key_field' in each
               else self.link(each['key_type']))
        self.write_page(each, 'table', f'<p>Rows of {self.link(each["record"])}, by {key}, after '
                        'tenant and before source.</p>'
                        f'<p>Identity in images: <code>{each["luid"]}</code>.</p>')

    def index(self, picture):
        # Names in the picture lead to their pages.
        picture = re.sub(r'(<text class="name"[^>]*>)(\w+)(</text>)', self.linked, picture)
        lists = []
        toc = []
        for kind, title in (('tables', 'Tables'), ('structures', 'Objects'),
                            ('enumerations', 'Enumerations'), ('flag_sets', 'Flag sets')):
            rows = ''.join(f'<tr><td>{self.link(each["name"])}</td>'
                           f'<td>{pieces.escaped(each["meaning"])}</td></tr>'
                           for each in self.model[kind])
            lists.append(f'<h2 id="{kind}">{title}</h2><table><tbody>{rows}</tbody></table>')
            toc.append((kind, title))
        self.site.write(self.site.addresses[INDEX], 'The tree of tables',
                        '<h1>The tree of tables</h1><p>Each table with its key, and the references '
                        'from rows to tables. Lines that pass over a column are dashed.</p>'
                        f'<div class="picture">{picture}</div>' + ''.join(lists), toc)

    def linked(self, match):
        name = match.group(2)
        for candidate in (name, 'tbl_' + name):
            if candidate in self.kinds:
                return f'<a href="{candidate}.html">{match.group(0)}</a>'
        sys.exit(f'docs/model.svg: found {name}, which the model does not have')


def write(site, source, here):
    model = json.loads((source / 'docs/model.json').read_text())
    pages = Pages(site, model, Facts(here / 'fields.toml', model))
    for each in model['structures']:
        pages.structure(each)
    for each in model['enumerations']:
        pages.members(each, 'enumeration', 'value')
    for each in model['flag_sets']:
        pages.members(each, 'flag set', 'bit')
    for each in model['tables']:
        pages.table(each)
    pages.index((source / 'docs/model.svg').read_text())
