"""The languages of scripts but Basic."""

from languages.language import Language, arguments, lower, variable_of


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
