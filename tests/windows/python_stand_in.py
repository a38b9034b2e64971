#!/usr/bin/env python3
"""Runs a host in Python where its automation package cannot be had: in place of win32com or comtypes there
is the library at its text prompt, called as that package calls a typed member, outputs and all.

    python_stand_in.py win32com|comtypes TOOLS IDL PROMPT COMPANY DATABASE SCRIPT
"""

import datetime
import re
import runpy
import subprocess
import sys
from types import ModuleType, SimpleNamespace

PACKAGE, TOOLS, IDL, PROMPT, COMPANY, DATABASE, SCRIPT = sys.argv[1:]
sys.path.insert(0, TOOLS)
import published  # noqa: E402

CLASSES = {c.name: {m.name: m for m in c.members} for c in published.read(IDL, "cc").classes}
# What its user does in the dialogs.
DIALOGS = {
    "Messaging.CheckForLogon": ["name anne", "password Rivet7", "ok"],
    "Customers.List": ["ok"],
    "Products.FastList": ["cancel"],
}
VALUE = re.compile(r'(?:\w+ = )?("(?:[^"]|"")*"|[^",]+)(?:, |$)')
END = '? Bank.AppName\n"Manufacturing"\n'
prompt = subprocess.Popen([PROMPT, COMPANY, DATABASE], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)


def ask(line, *commands):
    """The values of the last line that the prompt answers with."""
    prompt.stdin.write("\n".join([line, *commands, END.split("\n")[0], ""]))
    prompt.stdin.flush()
    said = ""
    while not said.endswith(END):
        said += prompt.stdout.readline() or sys.exit(f"the prompt has ended: {said}")
    lines = said[: -len(END)].splitlines()
    return [value(text) for text in VALUE.findall(lines[-1])] if lines[-1] != line else []


def value(text):
    if text.startswith('"'):
        return text[1:-1].replace('""', '"')
    if re.fullmatch(r"\d+-\d+-\d+", text):
        day = datetime.datetime.fromisoformat(text)
        return day if PACKAGE == "win32com" else float((day - datetime.datetime(1899, 12, 30)).days)
    return {"True": True, "False": False}[text] if text in ("True", "False") else float(text) if "." in text else int(text)


def literal(argument):
    return '"' + argument.replace('"', '""') + '"' if isinstance(argument, str) else str(argument)


class Object:
    def __init__(self, name):
        self.__dict__["name"] = name.removeprefix("ArdObjects100.")

    def __getattr__(self, name):
        member = self._member(name)
        question = f"{self.name}.{name}"
        if member.is_property:
            return ask(f"? {question}")[0]
        return lambda *given: self._packed(*self._call(member, question, given))

    def __setattr__(self, name, what):
        if self._member(name).result.base != "IDispatch*":  # the prompt has those itself
            ask(f"{self.name}.{name} = {literal(what)}")

    def _member(self, name):
        if name not in CLASSES[self.name]:
            raise AttributeError(name)
        return CLASSES[self.name][name]

    def _call(self, member, question, given):
        assert len(member.passed) >= len(given) >= sum("optional" not in p.flags for p in member.passed)
        passed = [(p, g) for p, g in zip(member.passed, given) if not p.is_output or isinstance(g, list)]
        texts = [f"0, {len(g) - 1}" if isinstance(g, list) else literal(g) for _, g in passed]
        answers = ask(f"? {question}({', '.join(texts)})", *DIALOGS.get(question, []))
        return (tuple(answers),) if any(isinstance(g, list) for g in given) else answers

    @staticmethod
    def _packed(*values):
        if len(values) < 2:
            return values[0] if values else None
        return tuple(values) if PACKAGE == "win32com" else list(values)


def by_name(_):
    return SimpleNamespace(Open=lambda _: None, Workspace=None)


client = ModuleType(PACKAGE + ".client")
package = ModuleType(PACKAGE)
package.client = client
sys.modules |= {"win32com": None, PACKAGE: package, PACKAGE + ".client": client}
if PACKAGE == "win32com":
    client.dynamic = SimpleNamespace(Dispatch=by_name)
    client.gencache = SimpleNamespace(EnsureDispatch=Object)
else:
    client.CreateObject = lambda name, dynamic=False: by_name(name) if dynamic else Object(name)
ask('Bank.AppName = "Manufacturing"')
sys.argv = [SCRIPT, COMPANY, DATABASE]
runpy.run_path(SCRIPT, run_name="__main__")
prompt.stdin.close()
prompt.wait()
