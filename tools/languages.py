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


class Basic(Language):
    comment = "'"
    end = ""
    true, false = "True", "False"

    def string(self, text):
        return '"' + text.replace('"', '""') + '"'

    def blank(self, parameter):
        return '""' if parameter.word() == "String" else "0"

    def set(self, target, value, is_object=False):
        return f"{'Set ' if is_object else ''}{target} = {value}"

    def call(self, text, arguments_text, is_procedure):
        return f"{text} {arguments_text}".rstrip() if is_procedure else f"{text}({arguments_text})"

    def element(self, name, index):
        return f"{name}({index})"


class VBScript(Basic):
    name, lexer = "VBScript", "vbscript"

    def new(self, name, program):
        return f'Set {name} = CreateObject("{program}")'

    def show(self, expression, word):
        return f"WScript.Echo {expression}"

    def array(self, name, size, elements):
        return f"Dim {name}({size - 1})" + "".join(f": {name}({i}) = {e}" for i, e in enumerate(elements))


class VBA(Basic):
    name, lexer, enumerators = "VBA", "vb.net", "{name}"

    def new(self, name, program):
        return f'Set {name} = CreateObject("{program}")'

    def create_object(self, interface, kind):
        yield f"Dim {variable_of(kind)} As New {interface.name}.{kind.name}"

    def declare(self, parameter, value):
        name = lower(parameter.name)
        blank = value in ('""', "0")
        return f"Dim {name} As {parameter.word()}" + ("" if blank else f": {name} = {value}")

    def show(self, expression, word):
        return f"Debug.Print {expression}"

    def array(self, name, size, elements):
        return f"Dim {name}(0 To {size - 1}) As String" + "".join(f": {name}({i}) = {e}" for i, e in enumerate(elements))


class VBNet(Basic):
    name, lexer, enumerators = "VB.NET", "vb.net", "ArdObjects100.{type}.{name}"

    def new(self, name, program):
        return f'Dim {name} As Object = CreateObject("{program}")'

    def create_object(self, interface, kind):
        yield f"Dim {variable_of(kind)} As New {interface.name}.{kind.name}"

    def set(self, target, value, is_object=False):
        return f"{'Dim ' if target.isidentifier() else ''}{target}{' As Object' if target.isidentifier() else ''} = {value}"

    def call(self, text, arguments_text, is_procedure):
        return f"{text}({arguments_text})"

    def declare(self, parameter, value):
        word = {"Integer": "Short", "Long": "Integer"}.get(parameter.word(), parameter.word())
        return f"Dim {lower(parameter.name)} As {word} = {value}"

    def show(self, expression, word):
        return f"Console.WriteLine({expression})"

    def element(self, name, index):
        return f"{name}.GetValue({index})"

    def array(self, name, size, elements):
        filled = f" {{{', '.join(elements)}}}" if elements else " {}"
        return f"Dim {name} As Array = New String({size - 1}){filled}"


class CSharp(Language):
    name, lexer, enumerators = "C#", "csharp", "ArdObjects100.{type}.{name}"
    wants_variables = True

    def string(self, text):
        return ("@" if "\\" in text else "") + '"' + text.replace('"', '""' if "\\" in text else '\\"') + '"'

    def new(self, name, program):
        return f'dynamic {name} = Activator.CreateInstance(Type.GetTypeFromProgID("{program}"))'

    def create_object(self, interface, kind):
        yield f"var {variable_of(kind)} = new {interface.name}.{kind.name}();"

    def set(self, target, value, is_object=False):
        return f"{'dynamic ' if target.isidentifier() else ''}{target} = {value}"

    def declare(self, parameter, value):
        words = {"BSTR": "string", "short": "short", "double": "double", "VARIANT_BOOL": "bool"}
        word = words.get(parameter.base, f"ArdObjects100.{parameter.base}")
        return f"{word} {lower(parameter.name)} = {value.replace('0.0', '0')}"

    def passed(self, parameter):
        return f"ref {lower(parameter.name)}"

    def show(self, expression, word):
        return f"Console.WriteLine({expression})"

    def element(self, name, index):
        return f"{name}.GetValue({index})"

    def array(self, name, size, elements):
        return f"Array {name} = new string[{size}]" + (f" {{ {', '.join(elements)} }}" if elements else "")


class Cpp(Language):
    name, lexer, enumerators = "C++", "cpp", "{name}"
    true, false = "VARIANT_TRUE", "VARIANT_FALSE"
    wants_variables = wants_all = True
    TYPES = {"String": "_bstr_t", "Boolean": "bool", "Integer": "short", "Long": "long", "Double": "double", "Date": "DATE"}

    def string(self, text):
        return "L" + super().string(text)

    def create(self, interface, kind):
        yield '#import "ArdObjects100.dll"'
        yield f"using namespace {interface.name};"
        yield f"{kind.interface}Ptr {variable_of(kind)}(__uuidof({kind.name}));"
        values = {
            "AppName": ('L"Manufacturing"', ""),
            "RegistryPath": ('L"Manufacturing"', ""),
            "ArdWorkspace": ("workspace", "the engine's: an IDispatchPtr"),
            "ArdEngine": ("engine", "the engine: an IDispatchPtr"),
            "oDBaseConn": ("connection", "an open ADODB.Connection"),
        }
        for member in kind.members:
            if member.name in values:
                value, remark = values[member.name]
                yield self.told(self.put_value(kind, member, value), remark)

    def put_value(self, kind, member, value):
        access = {"put": "Put", "putref": "PutRef"}[member.puts]
        return f"{variable_of(kind)}->{access}{member.name}({value});"

    def put(self, interface, kind, member, token):
        is_object = re.fullmatch(r"[a-z][\w.]*", token) is not None
        value = token.replace("engine.Workspace", "workspace") if is_object else self.literal(token)
        return self.put_value(kind, member, value)

    def ask(self, interface, kind, member, text, shown):
        target = variable_of(kind)
        for line in super().ask(interface, kind, member, text, shown):
            if member.is_property:
                line = line.replace(f"{target}.{member.name}", f"{target}->Get{member.name}()")
            yield line.replace(f"{target}.", f"{target}->")
        for argument in () if member.is_property else arguments(member, text):
            if argument.is_array and shown:
                name = lower(argument.parameter.name)
                if argument.bounds:
                    for index, value in zip(range(argument.bounds[0], argument.bounds[1] + 1), shown[None]):
                        yield f"// {name}[{index}]: {value}"
                yield f"SafeArrayDestroy({name});"

    def declare(self, parameter, value):
        word = {"BSTR": "BSTR", "short": "short", "double": "double", "VARIANT_BOOL": "VARIANT_BOOL"}.get(parameter.base, parameter.base)
        value = {'L""': "nullptr", "0.0": "0"}.get(value, value)
        return f"{word} {lower(parameter.name)} = {f'SysAllocString({value})' if value.startswith('L') else value}"

    def passed(self, parameter):
        return f"&{lower(parameter.name)}"

    def show(self, expression, word):
        if expression.isidentifier():
            return f"// {expression}"
        if "[" in expression:
            return ""
        truth = " == VARIANT_TRUE" if word == "Boolean" else ""
        return f"{self.TYPES[word]} answer = {expression}{truth}"

    def told(self, line, answer):
        if line == ";":
            return ""
        if line.startswith("// "):
            return f"{line.rstrip(';')}: {without_blanks(answer)}"
        return super().told(line, answer)

    def record(self, code):
        yield f"IDispatchPtr record = ...;   // the engine's StockRecord, found on {code[1:]}"

    def array(self, name, size, elements):
        text = f"SAFEARRAY* {name} = SafeArrayCreateVector(VT_BSTR, 0, {size})"
        for i, e in enumerate(elements):
            text += f"; long at{i} = {i}; SafeArrayPutElement({name}, &at{i}, _bstr_t({e}).GetBSTR())"
        return text

    def example(self, interface, kind, member, example):
        return filter(None, super().example(interface, kind, member, example))


class Python(Language):
    name, lexer = "Python", "python"
    comment, end, true, false = "#", "", "True", "False"

    def string(self, text):
        return ("r" if "\\" in text else "") + '"' + text + '"'

    def new(self, name, program):
        return f'{name} = win32com.client.Dispatch("{program}")'

    def create(self, interface, kind):
        yield "import win32com.client"
        yield from super().create(interface, kind)

    def create_object(self, interface, kind):
        yield f'{variable_of(kind)} = win32com.client.gencache.EnsureDispatch("{interface.name}.{kind.name}")'

    def show(self, expression, word):
        return f"print({expression})"

    def ask(self, interface, kind, member, text, shown):
        """Outputs come back, in a tuple, the result before them; what is passed for them is their first value."""
        target = f"{variable_of(kind)}.{member.name}"
        if member.is_property:
            yield from super().ask(interface, kind, member, text, shown)
            return
        passed, names = [], []
        for argument in arguments(member, text):
            parameter = argument.parameter
            if argument.is_array:
                names.append(lower(parameter.name))
                size = argument.bounds[1] + 1 if argument.bounds else 0
                passed.append(f"[{', '.join(self.string(e) for e in argument.elements)}]" if argument.elements else f'[""] * {size}')
            elif parameter.base == "IDispatch*":
                yield from self.record(self.literal(argument.value))
                passed.append("record")
            else:
                value = argument.value or self.blank(parameter)
                passed.append(self.literal(value))
                if "out" in parameter.flags:
                    names.append(lower(parameter.name) if parameter.is_output else "_")
        # One that is left out is put out, too.
        left_out = [p for p in member.passed if "out" in p.flags and "optional" in p.flags][len([n for n in names if n == "_"]) :]
        names += ["_"] * len(left_out)
        call = f"{target}({', '.join(passed)})"
        if shown is None:
            yield call
        elif not names:
            result = shown[None][0] if shown[None] else ""
            yield self.told(self.show(call, "") if member.result else call, result)
        else:
            yield f"{', '.join((['answer'] if member.result else []) + names)} = {call}"
            if member.result:
                yield self.told("print(answer)", shown[None][0])
            for name, value in shown.items():
                if name:
                    yield self.told(f"print({lower(name)})", value)
            for argument in arguments(member, text):
                if argument.bounds:
                    for index, value in zip(range(argument.bounds[0], argument.bounds[1] + 1), shown[None]):
                        yield self.told(f"print({lower(argument.parameter.name)}[{index}])", value)

    def blank(self, parameter):
        return '""' if parameter.word() == "String" else "0"


class JScript(Language):
    name, lexer = "JScript", "javascript"

    def new(self, name, program):
        return f'var {name} = new ActiveXObject("{program}")'

    def set(self, target, value, is_object=False):
        return f"{'var ' if target.isidentifier() else ''}{target} = {value}"

    def declare(self, parameter, value):
        """What is put out goes into the property `value` of an object: the language passes no variables."""
        blank = value in ('""', "0")
        return f"var {lower(parameter.name)} = {'{}' if blank else f'{{value: {value}}}'}"

    def blank(self, parameter):
        return '""' if parameter.word() == "String" else "0"

    def told_output(self, name):
        return f"{name}.value"

    def show(self, expression, word):
        return f"WScript.Echo({expression})"

    def array(self, name, size, elements):
        return f"var {name} = " + (f"[{', '.join(elements)}]" if elements else f"new Array({size})")


class Pascal(Language):
    name, lexer = "Pascal", "delphi"
    capital = True
    true, false = "True", "False"

    def string(self, text):
        return "'" + text.replace("'", "''") + "'"

    def new(self, name, program):
        return f"{self.variable(name)} := CreateOleObject('{program}')"

    def set(self, target, value, is_object=False):
        return f"{target} := {value}"

    def declare(self, parameter, value):
        return f"{self.passed(parameter)} := {value.replace('0.0', '0')}"

    def show(self, expression, word):
        return f"WriteLn({expression})"

    def call(self, text, arguments_text, is_procedure):
        return f"{text}({arguments_text})" if arguments_text else text

    def array(self, name, size, elements):
        text = f"{name} := VarArrayCreate([0, {size - 1}], varOleStr)"
        return text + "".join(f"; {name}[{i}] := {e}" for i, e in enumerate(elements))

    def record(self, code):
        yield "Found := Engine.Workspace.CreateRecordObject('StockRecord');"
        yield f"Found.Fields.Item('STOCK_CODE').Value := {code};"
        yield "Found.Find(False);"

    def ask(self, interface, kind, member, text, shown):
        words = {"Integer": "SmallInt", "String": "WideString", "Double": "Double"}
        outputs = [p for p in member.passed if p.is_output and "()" not in p.word()] if not member.is_property else []
        if outputs:
            yield "// var " + "; ".join(f"{self.passed(p)}: {words[p.word()]}" for p in outputs) + ";"
        for line in super().ask(interface, kind, member, text, shown):
            yield line.replace("(Record)", "(Found)")


class PowerShell(Language):
    name, lexer = "PowerShell", "powershell"
    comment, end, sigil = "#", "", "$"
    true, false = "$true", "$false"

    def string(self, text):
        return '"' + text.replace('"', '`"') + '"'

    def new(self, name, program):
        return f"${name} = New-Object -ComObject {program}"

    def declare(self, parameter, value):
        word = {"Integer": "int16", "String": "string", "Double": "double"}[parameter.word()]
        return f"[{word}]{self.variable(lower(parameter.name))} = {value}"

    def passed(self, parameter):
        return f"[ref]{self.variable(lower(parameter.name))}"

    def show(self, expression, word):
        return expression

    def array(self, name, size, elements):
        return f"[string[]]{name} = " + (f"@({', '.join(elements)})" if elements else f'@("") * {size}')

    def record(self, code):
        yield '$record = $engine.Workspace.CreateRecordObject("StockRecord")'
        yield f'$record.Fields.Item("STOCK_CODE").Value = {code}'
        yield "$null = $record.Find($false)"


ALL = [VBScript(), JScript(), VBA(), VBNet(), CSharp(), Cpp(), Python(), Pascal(), PowerShell()]
