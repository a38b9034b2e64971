"""Examples of the published interface (published.Example) in the languages of its hosts."""

from languages.basic import VBA, VBNet, VBScript
from languages.compiled import Cpp, CSharp, Pascal
from languages.language import answers, lower
from languages.scripts import JScript, PowerShell, Python

__all__ = ["ALL", "VBScript", "answers", "lower"]

ALL = [VBScript(), JScript(), VBA(), VBNet(), CSharp(), Cpp(), Python(), Pascal(), PowerShell()]
