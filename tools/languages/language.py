"""Writes an example of the published interface (published.Example) in the languages of its hosts.

A language is what follows about values, variables and calls; how an example goes is the same for all.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(r'"(?:[^"]|"")*"|[^,\s][^,]*')


@dataclass
class Argument:
    parameter: object
    value: str | None  # as the prompt takes it; None for an output that starts empty
    elements: list | None = None  # of an array that is passed
    bounds: tuple | None = None  # of an array that is filled

    @property
    def is_array(self):
        return self.elements is not None or self.bounds is not None


def arguments(member, text, complete=False):
    """What is passed, of the prompt's arguments: those of a filled array are its bounds. With `complete`, what is
    left out, too."""
    tokens = TOKEN.findall(text)
    for parameter in member.passed:
        if "()" in parameter.word():
            if tokens[0].startswith('"'):
                yield Argument(parameter, None, elements=tokens.pop(0).strip('"').split(";"))
            else:
                yield Argument(parameter, None, bounds=(int(tokens.pop(0)), int(tokens.pop(0))))
        elif tokens:
            yield Argument(parameter, tokens.pop(0))
        elif "optional" not in parameter.flags:
            yield Argument(parameter, None)
        elif complete:
            truth = {"-1": "True", "0": "False"} if parameter.base == "VARIANT_BOOL" else {}
            yield Argument(parameter, truth.get(parameter.default, parameter.default))


def without_blanks(answer):
    """An answer as a reader sees it: the engine pads texts to the width of their fields."""
    return re.sub(r'^"(.*\S)?( {4,})"$', lambda text: f'"{text[1] or ""}" and {len(text[2])} blanks', answer)


def answers(text):
    """{output: value}, that of the result being None, and an array's being a list."""
    found, values = {}, []
    for part in re.findall(r'(?:"(?:[^"]|"")*"|[^",])+', text):
        name, equals, value = part.strip().partition(" = ")
        if equals and name.isidentifier():
            found[name] = value
        else:
            values.append(part.strip())
    found[None] = values
    return found


def lower(name):
    return name[0].lower() + name[1:]


def variable_of(kind):
    return lower(kind.name.removeprefix("c")) if kind.name.startswith("c") else lower(kind.name)


class Language:
    name = lexer = ""
    comment = "//"
    end = ";"
    true, false = "true", "false"
    sigil = ""
    capital = False  # whether variables begin so
    enumerators = None  # "{type}.{name}", where the type library has them

    def variable(self, name):
        return self.sigil + (name[0].upper() + name[1:] if self.capital else name)

    def literal(self, token, parameter=None, interface=None):
        if token.startswith('"'):
            return self.string(token[1:-1].replace('""', '"'))
        if token in ("True", "False"):
            return self.true if token == "True" else self.false
        values = interface.enumerations.get(parameter.base) if interface and parameter else None
        if values and self.enumerators:
            name = next(n for n, (number, _) in values[1].items() if number == int(token))
            return self.enumerators.format(type=parameter.base, name=name)
        return token

    def string(self, text):
        return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'

    def remark(self, text):
        return f"{self.comment} {text}"

    def told(self, line, answer):
        return f"{line}   {self.remark(without_blanks(answer))}" if answer else line

    # What differs most, as statements without their end.

    def new(self, name, program):
        raise NotImplementedError

    def set(self, target, value, is_object=False):
        return f"{target} = {value}"

    def declare(self, parameter, value):
        """A variable for an output."""
        return f"{self.variable(lower(parameter.name))} = {value}"

    def passed(self, parameter):
        """That variable, as an argument."""
        return self.variable(lower(parameter.name))

    # Whether what is only read has to be a variable, when it is by reference; and nothing can be left out.
    wants_variables = wants_all = False

    def needs_variable(self, parameter):
        return self.wants_variables and "optional" in parameter.flags and parameter.type != parameter.base

    def told_output(self, name):
        """What an output has become."""
        return name

    def show(self, expression, word):
        raise NotImplementedError

    def call(self, text, arguments_text, is_procedure):
        return f"{text}({arguments_text})"

    def array(self, name, size, elements):
        raise NotImplementedError

    def element(self, name, index):
        return f"{name}[{index}]"

    def blank(self, parameter):
        return {"String": self.string(""), "Boolean": self.false, "Double": "0.0"}.get(parameter.word(), "0")

    def record(self, code):
        """A stock record of the engine's that has been found."""
        yield self.set("record", 'engine.Workspace.CreateRecordObject("StockRecord")', True) + self.end
        yield self.set('record.Fields.Item("STOCK_CODE").Value', code) + self.end
        yield self.call("record.Find", self.false, True) + self.end

    def open_engine(self):
        yield self.new("engine", "ArdSimulator.Engine") + self.end + "   " + self.remark("or the accounts product's own")
        yield self.call(f"{self.variable('engine')}.Open", self.string("company"), True) + self.end

    def create_object(self, interface, kind):
        yield self.new(variable_of(kind), f"{interface.name}.{kind.name}") + self.end

    def create(self, interface, kind):
        yield from self.open_engine()
        yield from self.create_object(interface, kind)
        target = self.variable(variable_of(kind))
        engine = self.variable("engine")
        context = {
            "AppName": (self.string("Manufacturing"), ""),
            "RegistryPath": (self.string("Manufacturing"), ""),
            "ArdWorkspace": (f"{engine}.Workspace", ""),
            "ArdEngine": (engine, ""),
            "oDBaseConn": (self.variable("connection"), "an open ADODB.Connection"),
        }
        names = [member.name for member in kind.members]
        for name, (value, remark) in context.items():
            if name in names:
                is_object = name in ("ArdWorkspace", "ArdEngine", "oDBaseConn")
                yield self.told(self.set(f"{target}.{name}", value, is_object) + self.end, remark)

    def example(self, interface, kind, member, example):
        members = {m.name: m for m in kind.members}
        for text in [*example.before, example.call]:
            call, _, user = text.partition(" {")
            user = user.rstrip("}").split(", ") if user else []
            if text == example.call:
                user = example.user
            name = re.match(r"\w+", call)[0]
            shown = answers(example.answer) if text == example.call else None
            if user:
                yield self.remark(f"The user answers the dialog: {', '.join(user)}.")
            rest = call[len(name) :]
            if rest.startswith(" = "):
                yield self.put(interface, kind, members[name], rest[3:])
            else:
                yield from self.ask(interface, kind, members[name], rest.strip("()"), shown)

    def put(self, interface, kind, member, token):
        is_object = re.fullmatch(r"[a-z][\w.]*", token) is not None
        value = self.sigil + token if is_object else self.literal(token)
        if is_object and self.capital:
            value = value[0].upper() + value[1:]
        return self.set(f"{self.variable(variable_of(kind))}.{member.name}", value, is_object) + self.end

    def ask(self, interface, kind, member, text, shown):
        """A call; with `shown`, what it answers."""
        target = f"{self.variable(variable_of(kind))}.{member.name}"
        if member.is_property:
            yield self.told(self.show(target, member.result.word()) + self.end, (shown[None] or [""])[0])
            return
        passed = []
        for argument in arguments(member, text, self.wants_all):
            parameter = argument.parameter
            if argument.is_array:
                name = self.variable(lower(parameter.name))
                size = argument.bounds[1] + 1 if argument.bounds else len(argument.elements)
                yield self.array(name, size, [self.string(e) for e in argument.elements or []]) + self.end
                passed.append(self.passed(parameter))
            elif parameter.base == "IDispatch*":
                yield from self.record(self.literal(argument.value))
                passed.append(self.variable("record"))
            elif parameter.is_output:
                value = self.literal(argument.value) if argument.value else self.blank(parameter)
                yield self.declare(parameter, value) + self.end
                passed.append(self.passed(parameter))
            else:
                value = self.literal(argument.value, parameter, interface)
                if self.needs_variable(parameter):
                    yield self.declare(parameter, value) + self.end
                    value = self.passed(parameter)
                passed.append(value)
        if shown is None or not member.result:
            yield self.call(target, ", ".join(passed), True) + self.end
        else:
            call = self.call(target, ", ".join(passed), False)
            result = shown[None][0] if shown[None] else ""
            yield self.told(self.show(call, member.result.word()) + self.end, result)
        for name, value in (shown or {}).items():
            if name:
                parameter = next(p for p in member.passed if p.name == name)
                yield self.told(self.show(self.told_output(self.variable(lower(name))), parameter.word()) + self.end, value)
        for argument in arguments(member, text):
            if argument.bounds and shown:
                name = self.variable(lower(argument.parameter.name))
                for index, value in zip(range(argument.bounds[0], argument.bounds[1] + 1), shown[None]):
                    yield self.told(self.show(self.element(name, index), "String") + self.end, value)
