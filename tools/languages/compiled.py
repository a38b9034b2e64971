"""The languages of compiled hosts but Basic."""

import re

from languages.language import Language, arguments, without_blanks, lower, variable_of


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
