#!/usr/bin/env python3
"""Reads the #include lines of src/ and tools/ and says which go where they must not.

usage: include_directions.py PROJECT_FOLDER | --self-test
"""
import pathlib
import re
import sys
import tempfile

# A folder may include itself and the folders before it; a folder below another is a room of its own.
ROOMS = ['text', 'values', 'platform', 'settings', 'log', 'probes',
         'jet/format', 'jet/pages', 'jet/index', 'jet/rows', 'jet', 'jetcheck', 'jetcreate',
         'jetsql/functions', 'jetsql/syntax', 'jetsql/translate', 'jetsql/sqlite', 'jetsql',
         'localdb', 'extract', 'settlement', 'transfer', 'server', 'job', 'ui', 'ui/qt', 'ui/win32', 'startup']
# Rooms side by side: neither uses the other.
APART = ['extract', 'settlement', 'transfer', 'server']
MAY_MEET = [('settlement', 'extract')]

# Libraries, and the only folder of src/ that may include each.
LIBRARIES = [(r'Q[A-Z]\w*(/.*)?$|Qt\w*/', 'ui/qt'), (r'curl/', 'transfer'), (r'sqlite3', 'jetsql'),
             (r'sql(ext|types|ucode)?\.h$', 'server'), (r'boost/multiprecision/', 'values')]
SYSTEM = 'platform'
# The system's header of Windows: of the twins, of what ODBC is made of there, and of the native views.
WINDOWS = ['platform', 'server', 'ui/win32']

STANDARD = set('''algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits
clocale cmath codecvt compare complex concepts condition_variable csignal cstdarg cstddef cstdint cstdio cstdlib cstring
ctime cwchar cwctype deque exception execution filesystem forward_list fstream functional future initializer_list iomanip
ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex new numbers numeric
optional ostream queue random ranges ratio regex semaphore set shared_mutex source_location span sstream stack stdexcept
stop_token streambuf string string_view syncstream system_error thread tuple type_traits typeindex typeinfo
unordered_map unordered_set utility valarray variant vector version'''.split())

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def complaint(room, quote, name):
    """Why a file of this room ('' for src/ itself and tools/) may not include name, or None."""
    if quote == '"':
        other = name.rpartition('/')[0]
        if not room or not other:
            return None
        if other not in ROOMS:
            return f'"{name}" is in no room'
        if ROOMS.index(other) > ROOMS.index(room):
            return f'{room} must not use {other}'
        if other != room and other in APART and room in APART and (room, other) not in MAY_MEET:
            return f'{room} stands beside {other} and must not use it'
        if other in ('ui/qt', 'ui/win32') and room != other:
            return f'only {other} may use its views'
        return None
    if name in STANDARD:
        return None
    if name in ('windows.h', 'commctrl.h'):
        return None if room in WINDOWS else f'<{name}> belongs to ' + ', '.join(WINDOWS)
    for pattern, owner in LIBRARIES:
        if re.match(pattern, name):
            return None if (room + '/').startswith(owner + '/') else f'<{name}> belongs to {owner} only'
    return None if room == SYSTEM else f'<{name}> belongs to {SYSTEM} only'


def cycles(includes):
    """The files that include themselves through others, one complaint a cycle. includes: name -> names."""
    done, problems = set(), []

    def walk(name, path):
        if name in path:
            problems.append(f'{name}: includes itself: ' + ' -> '.join(path[path.index(name):] + [name]))
        elif name not in done:
            for other in includes.get(name, []):
                walk(other, path + [name])
            done.add(name)

    for name in sorted(includes):
        walk(name, [])
    return problems


def check(project):
    problems, count, includes = [], 0, {}
    for top in ('src', 'tools'):
        for path in sorted((project / top).rglob('*')):
            if path.suffix not in ('.h', '.cpp'):
                continue
            folder = path.parent.relative_to(project / top).as_posix() if top == 'src' else ''
            room = '' if folder == '.' else folder
            if room and room not in ROOMS:
                problems.append(f'{path.relative_to(project)}: {room} is no room')
                continue
            found = INCLUDE.findall(path.read_text())
            count += len(found)
            why = (complaint(room, quote, name) for quote, name in found)
            problems += [f'{path.relative_to(project)}: {each}' for each in why if each]
            if top == 'src':
                includes['src/' + path.relative_to(project / top).as_posix()] = [
                    'src/' + name for quote, name in found if quote == '"']
    return problems + cycles(includes), count


def self_test():
    wrong = {'src/log/a.h': '#include "jet/row.h"', 'src/jet/b.cpp': '#include <unistd.h>',
             'src/job/c.cpp': '#include <QString>', 'src/ui/d.h': '# include "ui/qt/upload.h"',
             'src/ui/e.cpp': '#include <QtWidgets/QLabel>', 'src/extract/f.cpp': '#include <sqlite3.h>',
             'src/ui/qt/g.cpp': '  #include <curl/curl.h>', 'src/jetsql/h.cpp': '#include <sql.h>',
             'src/extra/i.cpp': '', 'src/main.cpp': '#include <sys/stat.h>',
             'tools/j.cpp': '#include <fcntl.h>', 'src/jet/k.h': '#include "nowhere/x.h"',
             'src/jet/pages/l.cpp': '#include "jet/table.h"', 'src/transfer/m.cpp': '#include "server/x.h"',
             'src/jet/n.h': '#include "jet/o.h"', 'src/text/own.h': '#include "text/own.h"'}
    right = {'src/job/a.h': '#include <vector>\n#include "log/x.h"', 'src/ui/qt/b.h': '#include <QWidget>\n#include "job/x.h"',
             'src/platform/c.cpp': '#include <unistd.h>', 'src/main.cpp.in': '#include <unistd.h>',
             'src/server/d.cpp': '#include <sqlext.h>', 'tools/e.cpp': '#include "startup/x.h"',
             'src/jet/o.h': '#include "jet/p.h"', 'src/jet/p.h': '#include "jet/n.h"',
             'src/jetsql/sqlite/q.cpp': '#include <sqlite3.h>', 'src/jet/r.h': '#include "jet/rows/x.h"'}
    with tempfile.TemporaryDirectory() as folder:
        project = pathlib.Path(folder)
        for name, text in {**wrong, **right}.items():
            (project / name).parent.mkdir(parents=True, exist_ok=True)
            (project / name).write_text(text)
        found = {problem.split(':')[0] for problem in check(project)[0]}
    return [f'{name}: judged wrongly' for name in found ^ set(wrong)]


def main():
    if sys.argv[1] == '--self-test':
        problems = self_test()
    else:
        problems, count = check(pathlib.Path(sys.argv[1]))
        if count == 0:
            problems.append('no #include line found')
    print('\n'.join(problems) or 'as they should be')
    return 1 if problems else 0


sys.exit(main())
