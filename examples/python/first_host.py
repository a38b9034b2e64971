#!/usr/bin/env python3
"""A first host in Python, with pywin32 or comtypes, early-bound by either.

Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
        Outputs are passed a value each, and come back as the call's result, in their order; so does an
        array, which is passed as a list.
Run     python first_host.py [COMPANY [CONNECTION]]     with pywin32, or without it with comtypes
        A 64-bit Python takes the 64-bit library, a 32-bit one the 32-bit library.
Checked with stand-ins for both packages whose answers are the prompt's (./demo --console). Not run on
        Windows, nor with the packages themselves.
"""

import datetime
import sys

# Your own accounts engine, company and database go here.
ENGINE_CLASS = "ArdSimulator.Engine"
COMPANY = r"C:\companies\demo"
CONNECTION = r"Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db"
# Access:      r"Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb"
# SQL Server:  r"Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
# No database: ""

try:
    import win32com.client

    # By name only, for engine and database; and with what the type library says of the members.
    by_name = win32com.client.dynamic.Dispatch
    by_type = win32com.client.gencache.EnsureDispatch
except ImportError:
    import comtypes.client

    def by_name(name):
        return comtypes.client.CreateObject(name, dynamic=True)

    by_type = comtypes.client.CreateObject


ZERO_DATE = datetime.date(1899, 12, 30)


class Host:
    def __init__(self, company, connection):
        self.company = company
        self.engine = by_name(ENGINE_CLASS)
        self.engine.Open(company)
        self.database = None
        if connection:
            self.database = by_name("ADODB.Connection")
            self.database.Open(connection)

    def create(self, name, **properties):
        """An object of the library's: each needs the engine's workspace."""
        made = by_type("ArdObjects100." + name)
        for key, value in {"ArdWorkspace": self.engine.Workspace, **properties}.items():
            # What comtypes has found by name is inside an object of its own.
            setattr(made, key, getattr(value, "_comobj", value))
        return made

    def run(self):
        session = self.create(
            "Messaging",
            AppName="Manufacturing",
            RegistryPath="First Host",
            ArdDataPath=self.company,
            UniqueID="FIRST",
            ArdEngine=self.engine,
            oDBaseConn=self.database,
            UseAccRights=self.database is not None,
        )
        if not session.CheckForLogon():
            print("Not logged on")
            return
        print("Logged on:", session.UserLogged)

        self.customers = self.create("Customers", AppName=session.AppName)
        self.products = self.create(
            "Products", AppName=session.AppName, RegistryPath=session.RegistryPath, oDBaseConn=self.database
        )
        self.general = self.create("General")
        self.quantity_places, self.price_places, _, _ = self.general.GetDPSettings(0, 0, "", "")

        self.ask_about_customers()
        self.ask_about_product("SHELF-1200X600", "ABC001")
        self.ask_about_settings("ABC001")
        self.pick()
        self.allocate("SHELF-1200X600")

        session.LogoffUser()
        print("Logged off")

    def ask_about_customers(self):
        for reference in ("ABC001", "NOBODY"):
            # Nothing is raised: what is not there has an empty name.
            known = self.customers.IsValid(reference)
            print(f"Customer {reference}: {self.customers.GetName(reference) if known else 'not known'}")

    def ask_about_product(self, code, customer):
        allocated, on_order = self.products.GetAllocOnOrder(code, 0.0, 0.0)
        free = self.products.GetFreeStock(code)
        list_price = self.products.GetSellPrice(code)
        price = self.products.GetSpecialPrice(code, customer)
        print(f"Product {code}: {self.products.GetDesc(code)}")
        print(
            f"Free {self.quantity(free)}, allocated {self.quantity(allocated)},"
            f" on order {self.quantity(on_order)}"
        )
        print(f"Price {self.price(list_price)}, for {customer} {self.price(price)}")
        print(f"Last bought: {self.last_bought(code)}; LOCKER-3D300 on {self.last_bought('LOCKER-3D300')}")

    def last_bought(self, code):
        date = self.products.GetLastPurDate(code)
        if isinstance(date, float):
            date = ZERO_DATE + datetime.timedelta(date)  # comtypes gives days
        # The zero date stands for none.
        day = datetime.date(date.year, date.month, date.day)
        return "never" if day == ZERO_DATE else day.isoformat()

    def ask_about_settings(self, customer):
        print(f"Decimal places: {self.quantity_places} of quantities, {self.price_places} of prices")
        record = self.create("CustomerRecord")
        if record.Read(customer):
            rate = self.general.GetVatRate(record.TaxCode)
            print(f"Tax of {customer}: {self.price(rate)} %, {self.general.GetVatDesc(record.TaxCode).strip()}")
        # The library fills the elements that there are, here those of codes 0 to 2.
        codes = self.general.GetTaxCodes([""] * 3)
        print("Tax codes:", ", ".join(codes))

    def pick(self):
        # The list opens on the first customer that matches.
        customer = self.customers.List("SMI*")
        print("Picked customer:", f"{customer}, {self.customers.GetName(customer)}" if customer else "none")
        # An optional argument is left out.
        print("Picked product:", self.products.FastList() or "none")

    def allocate(self, code):
        if self.products.UpdateAllocQty(code, 6):
            print("6 more: allocated", self.allocated(code))
        if not self.products.UpdateAllocQty(code, 1000):
            print("1000 more: refused")
        if self.products.UpdateAllocQty(code, -6):
            print("6 less: allocated", self.allocated(code))

    def allocated(self, code):
        allocated, _ = self.products.GetAllocOnOrder(code, 0.0, 0.0)
        return self.quantity(allocated)

    def quantity(self, value):
        return f"{value:.{self.quantity_places}f}"

    def price(self, value):
        return f"{value:.{self.price_places}f}"


if __name__ == "__main__":
    company = sys.argv[1] if len(sys.argv) > 1 else COMPANY
    connection = sys.argv[2] if len(sys.argv) > 2 else CONNECTION
    Host(company, connection).run()
