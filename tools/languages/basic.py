"""Basic, as scripts, Office and .NET have it."""

from languages.language import Language, lower, variable_of


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
