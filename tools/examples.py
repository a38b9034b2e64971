#!/usr/bin/env python3
"""Runs the examples of the reference, which stand in the published interface's IDL, at the prompt.

    examples.py IDL COMPILER PROMPT COMPANY DATABASE

says which of them do not answer what stands beside them. The company and the database are written to.
With the option --fill first, the answers that are not there, or are others, are written into the IDL.

    examples.py --questions IDL COMPILER

prints those without a dialog as tests/windows/answers.txt has its questions: behind a TAB is what the reference
shows in VBScript.
"""

import re
import subprocess
import sys
from pathlib import Path

import languages
import published


def is_object(step):
    """Whether the step hands over one of the stores, which the prompt does itself."""
    return re.fullmatch(r"\w+ = [a-z]\w*(\.\w+)?", step) is not None


def commands(kind, step):
    """What the prompt is to be asked: the commands of a dialog follow the call in braces."""
    call, _, user = step.partition(" {")
    yield f"{'' if ' = ' in call else '? '}{kind.name}.{call}"
    yield from user.rstrip("}").split(", ") if user else []


def all_examples(interface):
    for kind in interface.classes:
        for member in kind.members:
            for example in member.examples:
                if not is_object(example.call):
                    yield kind, member, example


def answers(interface, prompt, company, database):
    """The answer of each example, in order."""
    asked = []
    lines = ["' Examples."]
    for number, (kind, _, example) in enumerate(all_examples(interface)):
        for step in example.before:
            lines += commands(kind, step)
        # A command that is refused, and shows where the answer begins and ends.
        lines += [f"? Example{number}.Begins", *commands(kind, example.call), *example.user, f"? Example{number}.Ends"]
        asked.append(number)
    output = subprocess.run(
        [prompt, company, database], input="\n".join(lines) + "\n", capture_output=True, text=True
    ).stdout
    for number in asked:
        part = output.partition(f"? Example{number}.Begins\n")[2].partition(f"? Example{number}.Ends\n")[0]
        yield part.splitlines()


def questions(interface):
    script = languages.VBScript()
    for kind, member, example in all_examples(interface):
        if "{" in str(example):
            continue
        for step in example.before:
            yield from commands(kind, step)
        text = example.call.removeprefix(member.name).strip("()")
        lines = script.ask(interface, kind, member, text, languages.answers(example.answer))
        outputs = {languages.lower(p.name): p.name for p in member.passed if p.is_output and "()" not in p.word()}
        told = []
        for line in lines:
            line = re.sub(r"   ' .*", "", line)
            shown = line.removeprefix("WScript.Echo ")
            if shown in outputs and not member.is_property:
                told.append(f'Outputs Array("{outputs[shown]}", {shown})')
            else:
                told.append(line.replace("WScript.Echo ", "Result ", 1))
        yield f"? {kind.name}.{example.call}\t{': '.join(told)}"


def main():
    arguments = sys.argv[1:]
    if arguments[0] == "--questions":
        print("\n".join(questions(published.read(*arguments[1:]))))
        return 0
    fill = arguments[0] == "--fill"
    idl, compiler, prompt, company, database = arguments[fill:]
    interface = published.read(idl, compiler)
    wrong = total = 0
    text = Path(idl).read_text()
    for (kind, member, example), lines in zip(
        all_examples(interface), answers(interface, prompt, company, database)
    ):
        total += 1
        answer = lines[-1] if lines and (member.result or len(lines) > 2 and not example.user) else ""
        if answer.startswith("? "):
            answer = ""
        if answer == example.answer:
            continue
        wrong += 1
        print(f"{kind.name}, {example}: {example.answer or 'nothing'} stands there, the answer is {answer}")
        if fill:
            text = refilled(text, kind, member, example, answer)
    if fill:
        Path(idl).write_text(text)
    print(f"{total - wrong} passed, {wrong} failed")
    return wrong > 0 and not fill


def refilled(text, kind, member, example, answer):
    """The IDL with that answer: behind the example's own line in the class's interface, or the macro's."""
    start = text.index(f"interface _{kind.name} :")
    at = text.find(f"Example: {example}", start)
    if at < 0 or at > text.index("};", start):
        at = text.index(f"Example: {example}")
    end = at + len(f"Example: {example}")
    rest = re.match(r"( -> [^\n]*?)?(?= \*/|\n)", text[end:])
    return text[:end] + (f" -> {answer}" if answer else "") + text[end + rest.end() :]


if __name__ == "__main__":
    sys.exit(main())
