#!/usr/bin/env python3
"""Planted faults: how many small faults in the sources do the tests notice?

    make mutants                                   # the fixed sample, the fixed seed
    scripts/mutants.py --seed 5                    # the same files, other mutants
    scripts/mutants.py Graphics2/src/Vector.cpp --count 20   # files of your choice
    scripts/mutants.py --list                      # what would be planted, no build

Run from the repository root after `make build`. Each mutant changes one token
or drops one call statement on one line of one file: a comparison, && or ||,
+ - * /, a whole number, true or false, a leading !, or a statement that is
only a call. The file is patched in place, the test programs of its module
(build/tests/<Module>/<Module>_*_test) are rebuilt and run, then ctest's tests
named '<Module>.*' if there are any (apps: the commands run end to end). A
mutant is killed when a test fails or runs out of time, survives when every
test passes; one that does not compile is not counted. The file's bytes are
put back after every mutant, on Ctrl+C or SIGTERM, and at the start of the
next run if a run was killed outright (FILE.mutant-original beside it).
"""
import argparse
import os
import random
import re
import signal
import subprocess
import sys
import time

# The fixed sample: files whose faults people would meet, per module, and how
# many mutants each module gets. Changing it changes the score: keep
# docs/testing.md in step. The commands' end-to-end tests take about ten
# minutes all together, so the sample runs only those that drive its files.
SAMPLE = {
    'ZBExtensions': (['ZBExtensions/src/Strings.cpp', 'ZBExtensions/src/URLExtensions.cpp',
                      'ZBExtensions/src/StringReplacement.cpp'], 6),
    'Graphics2': (['Graphics2/src/PerlinGenerator.cpp', 'Graphics2/src/Vector.cpp',
                   'Graphics2/src/Color.cpp'], 7),
    'CoreGraphicsRendering': (['CoreGraphicsRendering/src/SVGDocument.cpp',
                               'CoreGraphicsRendering/src/BMPEncoder.cpp'], 6),
    'OverlayGenerator': (['OverlayGenerator/src/Grid.cpp',
                          'OverlayGenerator/src/AspectRatioLayout.cpp'], 6),
    'Platform': (['Platform/src/NumberText.cpp', 'Platform/src/URL.cpp'], 6),
    'FramingDecisions': (['FramingDecisions/src/FDLSchemaCheck.cpp',
                          'FramingDecisions/src/FrameLineChart.cpp'], 6),
    'VantelPreview': (['VantelPreview/src/Thumbnail.cpp'], 4),
    'apps': (['apps/vantel/OutputSize.cpp', 'apps/vantel/GuideExpression.cpp'], 5),
}
SAMPLE_END_TO_END = {'apps': r'^apps\.(render_size|new)$'}
SEED = 2024

SWAPS = {'<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '==',
         '&&': '||', '||': '&&', '+': '-', '-': '+', '*': '/', '/': '*'}
# An operator only when spaced on both sides: templates, pointers, unary
# minus and ++ stay out of it.
SPACED_OPERATOR = re.compile(r'(?<= )(<=|>=|==|!=|&&|\|\||[<>+\-*/])(?= )')
WHOLE_NUMBER = re.compile(r'(?<![\w.\'])\d{1,9}(?![\w.\'])')
BOOLEAN = re.compile(r'\b(true|false)\b')
NEGATION = re.compile(r'(?<![\w)\]!=<>])!(?=[\w(*])')
CALL_ONLY = re.compile(r'^\s*(?:[\w:]+(?:\.|->))*[\w:]+\(.*\);\s*$')
NOT_CODE = re.compile(r'^\s*(#|//|/?\*|static_assert|namespace\b|using\b|template\b|case\b|default:|[{}])')
DECLARES = re.compile(r'^\s*(?:const\s+)?(?:auto|bool|int|double|float|char|std::\w+|[A-Z]\w*)\b[\w:<>,\s&*]*\s[&*]?\w+\s*[({]')


def blank_literals(line):
    """The line with string and character literals and // comments blanked, same length."""
    out, quote, i = [], None, 0
    while i < len(line):
        c = line[i]
        if quote:
            out.append(' ')
            if c == '\\' and i + 1 < len(line):
                out.append(' ')
                i += 1
            elif c == quote:
                quote = None
        elif c in '"\'' and not (c == "'" and i > 0 and line[i - 1].isalnum()):
            quote = c
            out.append(' ')
        elif line.startswith('//', i):
            out.append(' ' * (len(line) - i))
            break
        else:
            out.append(c)
        i += 1
    return ''.join(out)


def mutants_of(path, lines):
    """Every (path, line, column, old, new) this file offers."""
    found, in_comment = [], False
    for n, line in enumerate(lines):
        if in_comment or line.lstrip().startswith('/*'):
            in_comment = '*/' not in line
            continue
        if not line.strip() or NOT_CODE.match(line) or 'R"' in line:
            continue
        code = blank_literals(line)
        for m in SPACED_OPERATOR.finditer(code):
            found.append((path, n, m.start(), m.group(), SWAPS[m.group()]))
        for m in WHOLE_NUMBER.finditer(code):
            value = int(m.group())
            found.append((path, n, m.start(), m.group(), '0' if value == 1 else str(value + 1)))
        for m in BOOLEAN.finditer(code):
            found.append((path, n, m.start(), m.group(), 'false' if m.group() == 'true' else 'true'))
        for m in NEGATION.finditer(code):
            found.append((path, n, m.start(), '!', ''))
        if CALL_ONLY.match(code) and not DECLARES.match(code) and not code.lstrip().startswith('return') \
                and '=' not in code.split('(')[0]:
            start = len(line) - len(line.lstrip())
            found.append((path, n, start, line.strip(), ';'))
    return found


def planted(text, n, column, old, new):
    lines = text.split('\n')
    assert lines[n][column:column + len(old)] == old, (lines[n], column, old)
    lines[n] = lines[n][:column] + new + lines[n][column + len(old):]
    return '\n'.join(lines)


def module_of(path):
    return path.split('/')[0]


def quiet(command, timeout):
    """The exit status, or None when it ran out of time."""
    try:
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=timeout).returncode
    except subprocess.TimeoutExpired:
        return None


def test_programs(build, module):
    folder = os.path.join(build, 'tests', module)
    if not os.path.isdir(folder):
        return []
    return sorted(os.path.join(folder, name) for name in os.listdir(folder)
                  if name.startswith(module + '_') and name.endswith('_test')
                  and os.access(os.path.join(folder, name), os.X_OK))


def has_ctest_tests(build, regex):
    listed = subprocess.run(['ctest', '--test-dir', build, '-N', '-R', regex],
                            capture_output=True, text=True).stdout
    return re.search(r'Total Tests: [1-9]', listed) is not None


class Originals:
    """Puts the sample's files back as they were, whatever ends the run."""

    def __init__(self, paths):
        for path in paths:
            saved = path + '.mutant-original'
            if os.path.exists(saved):
                os.replace(saved, path)
                print(f'put back {path} from a run that was killed')
        self.texts = {path: open(path, encoding='utf-8').read() for path in paths}

    def patch(self, path, text):
        with open(path + '.mutant-original', 'w', encoding='utf-8') as out:
            out.write(self.texts[path])
        with open(path, 'w', encoding='utf-8') as out:
            out.write(text)

    def restore(self):
        for path, text in self.texts.items():
            if os.path.exists(path + '.mutant-original'):
                with open(path, 'w', encoding='utf-8') as out:
                    out.write(text)
                os.remove(path + '.mutant-original')


def tests_fail(build, module, programs, regex, timeout, jobs):
    for program in programs:
        if quiet([program, '--gtest_brief=1'], timeout) != 0:
            return True
    if has_ctest_tests(build, regex):
        status = quiet(['ctest', '--test-dir', build, '-R', regex, '-j', str(jobs), '--stop-on-failure'],
                       timeout * 10)
        return status != 0
    return False


def try_mutant(args, originals, mutant):
    path, n, column, old, new = mutant
    module = module_of(path)
    programs = test_programs(args.build, module)
    originals.patch(path, planted(originals.texts[path], n, column, old, new))
    try:
        # apps: its end-to-end tests run the commands, so everything is rebuilt.
        targets = [os.path.basename(p) for p in programs] if module != 'apps' else []
        if quiet(['cmake', '--build', args.build, '-j', str(args.jobs), '--'] + targets, 1800) != 0:
            return 'did not build'
        regex = f'^{module}\\.' if args.files else SAMPLE_END_TO_END.get(module, f'^{module}\\.')
        return 'killed' if tests_fail(args.build, module, programs, regex, args.timeout, args.jobs) else 'SURVIVED'
    finally:
        originals.restore()


def chosen_mutants(args):
    if args.files:
        groups = [(args.files, args.count or 20)]
    else:
        groups = [(files, args.count or count) for module, (files, count) in SAMPLE.items()
                  if module in (args.module or SAMPLE)]
    chosen = []
    for files, count in groups:
        pool = []
        for path in files:
            pool += mutants_of(path, open(path, encoding='utf-8').read().split('\n'))
        random.Random(args.seed).shuffle(pool)
        chosen += pool[:count]
    return chosen


def describe(mutant):
    path, n, _, old, new = mutant
    return f'{path}:{n + 1}: {old} -> {new if new != ";" else "(dropped)"}'


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('files', nargs='*', help='files to plant in (default: the fixed sample)')
    parser.add_argument('--count', type=int, help='mutants per module of the sample, or in all FILES (20)')
    parser.add_argument('--seed', type=int, default=SEED)
    parser.add_argument('--build', default='build')
    parser.add_argument('--jobs', type=int, default=os.cpu_count() or 2)
    parser.add_argument('--timeout', type=int, default=120, help='seconds for one test program')
    parser.add_argument('--module', action='append', choices=SAMPLE, help="only this module's part of the sample")
    parser.add_argument('--list', action='store_true', help='print the mutants, plant nothing')
    args = parser.parse_args()

    paths = args.files or [p for module, (files, _) in SAMPLE.items() if module in (args.module or SAMPLE)
                           for p in files]
    if args.list:  # reads only: a run under way may hold a file patched
        print('\n'.join(describe(m) for m in chosen_mutants(args)))
        return
    originals = Originals(paths)
    mutants = chosen_mutants(args)
    if not os.path.isdir(args.build):
        sys.exit(f'no build folder {args.build}: run `make build` first')

    def interrupted(signum, _frame):
        originals.restore()
        sys.exit(128 + signum)
    signal.signal(signal.SIGINT, interrupted)
    signal.signal(signal.SIGTERM, interrupted)

    killed, survivors = 0, []
    try:
        for i, mutant in enumerate(mutants, 1):
            started = time.time()
            verdict = try_mutant(args, originals, mutant)
            killed += verdict == 'killed'
            if verdict == 'SURVIVED':
                survivors.append(mutant)
            print(f'[{i}/{len(mutants)}] {verdict:13} {describe(mutant)} ({time.time() - started:.0f} s)',
                  flush=True)
    finally:
        originals.restore()
        quiet(['cmake', '--build', args.build, '-j', str(args.jobs)], 3600)

    tried = killed + len(survivors)
    print(f'\nplanted-fault score: {killed} of {tried} caught = {100 * killed / max(tried, 1):.0f} %')
    for mutant in survivors:
        print(f'  survived {describe(mutant)}')


if __name__ == '__main__':
    main()
