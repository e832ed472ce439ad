"""The C headers as pages: what stands in a doc block, beside what it is about."""
import pathlib
import re

import pieces

# Pages that list headers, with the folders that they take them from.
LISTS = {'c/model': 'C: types and tables', 'c/runtime': 'C: the runtime',
         'c/check': 'C: the check of what comes from outside'}
FOLDERS = {'c/model': 'include', 'c/runtime': 'runtime/include',
           'c/check': 'libs/ospf-harbor-check/include'}


def address(header):
    return f'c/{str(header).replace("/", "-").removesuffix(".h")}.html'


def blocks(text):
    """What a header says, in order: ('heading', title), or (comment, what it is about)."""
    lines = text.split('\n')
    number = 0
    while number < len(lines):
        if not lines[number].startswith('/*'):
            number += 1
            continue
        first = number
        while '*/' not in lines[number]:
            number += 1
        number += 1
        comment = '\n'.join(re.sub(r'^(/\*| \*) ?', '', line).replace('*/', '').rstrip()
                            for line in lines[first:number]).strip()
        heading = re.fullmatch(r'-+ (.+?) -+', comment)
        if heading:
            yield 'heading', heading.group(1)
            continue
        begin = number
        while number < len(lines) and lines[number] and not lines[number].startswith('/*'):
            number += 1
        yield comment, '\n'.join(lines[begin:number])


def names_in(code):
    """What a declaration declares."""
    names = re.findall(r'^(?:KELP_API|static inline)[^;{(]*?\b(\w+)\(', code, re.M)
    names += re.findall(r'^typedef [^;{(]*?\b(\w+);', code, re.M)
    names += re.findall(r'^\} (\w+);', code, re.M)
    names += re.findall(r'^typedef .*\(\*(\w+)\)', code, re.M)
    names += re.findall(r'^(?:enum|struct) (\w+)', code, re.M)
    names += re.findall(r'^#define (\w+)', code, re.M)
    return list(dict.fromkeys(name for name in names if not name.endswith('_H')))


def comment_as_html(comment):
    """Sentences; what is set in as a list, and what stands behind Errors:, Lock: and so on as well."""
    said, labelled = [], []
    for line in comment.split('\n'):
        label = re.match(r'(Errors|Ownership|Lock|Family): (.*)', line)
        if label:
            labelled.append([label.group(1), label.group(2)])
        elif labelled:
            labelled[-1][1] += ' ' + line.strip()
        elif not line.startswith('Written by the emitter'):
            said.append(line)
    text = ''
    for part in '\n'.join(said).split('\n\n'):
        lines = part.split('\n')
        items = [f'<li>{pieces.prose(line)}</li>' for line in lines if re.match(r'  \w+: ', line)]
        rest = '\n'.join(line for line in lines if not re.match(r'  \w+: ', line))
        text += f'<p>{pieces.prose(rest)}</p>' + (f'<ul>{"".join(items)}</ul>' if items else '')
    if labelled:
        text += '<dl class="facts">' + ''.join(
            f'<dt>{label}</dt><dd>{pieces.prose(rest)}</dd>' for label, rest in labelled) + '</dl>'
    return text


def write_header(site, header, text):
    """The page of one header; gives the sentence that opens it."""
    body, toc, opening = [], [], ''
    for comment, code in blocks(text):
        if comment == 'heading':
            anchor = re.sub(r'\W+', '-', code).strip('-')
            body.append(f'<h2 id="{anchor}">{pieces.escaped(code)}</h2>')
            toc.append((anchor, code))
            continue
        if not opening:
            opening = comment
            body.append(comment_as_html(comment))
            continue
        names = names_in(code)
        anchors = ''.join(f'<a id="{name}"></a>' for name in names)
        shown = f'<pre class="declared">{pieces.escaped(code)}</pre>' if code else ''
        body.append(f'<section class="declaration">{anchors}{shown}{comment_as_html(comment)}'
                    '</section>')
        for name in names:
            site.find(name, f'{address(header)}#{name}', 'C')
    title = f'<h1><code>&lt;{header}&gt;</code></h1>'
    site.write(address(header), str(header), title + ''.join(body), toc)
    return re.split(r'[.;]\s', opening + ' ', maxsplit=1)[0].replace('\n', ' ')


def write(site, source, page):
    folder = source / FOLDERS[page]
    rows = []
    for path in sorted(folder.rglob('*.h'), key=lambda path: (len(path.parts), path)):
        header = path.relative_to(folder)
        sentence = write_header(site, header, path.read_text())
        name = pathlib.Path(address(header)).name
        rows.append(f'<tr><td><a href="{name}"><code>{header}</code></a></td>'
                    f'<td>{pieces.prose(sentence)}.</td></tr>')
    table = ('<table><thead><tr><th>Header</th><th>What it has</th></tr></thead><tbody>'
             + ''.join(rows) + '</tbody></table>')
    site.write(site.addresses[page], LISTS[page], f'<h1>{LISTS[page]}</h1>{table}')
