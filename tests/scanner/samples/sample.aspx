<%@ Page Language="C#" AutoEventWireup="true" %>
<%@ Import Namespace="System.Linq" %>
<%-- An order list page, written against the ASP.NET Web Forms syntax reference:
     directives, code blocks, expressions, server comments and server scripts. --%>
<!DOCTYPE html>
<html>
<head>
  <title>Orders</title>
  <style>
    /* totals stand out */
    td.total { font-weight: bold; color: #336699; }
  </style>
</head>
<body>
  <h1>Orders of <%= User.Identity.Name %></h1>
  <p>Don't see an order? It's probably still on its way.</p>
  <table>
  <% foreach (var order in Orders.Where(o => o.Total > 0)) { %>
    <tr>
      <td><%: order.Id %></td>
      <td class="total"><%= order.Total.ToString("C") %></td>
    </tr>
  <% } %>
  </table>
  <!-- the count comes from the server -->
  <p>Count: <%= Orders.Count() %></p>
</body>
</html>
<script runat="server">
  // the orders of the signed-in user
  protected IEnumerable<Order> Orders => Order.ForUser(User.Identity.Name);
  protected void Page_Load(object sender, EventArgs e) {
    if (!IsPostBack) { Title = "Orders: " + Orders.Count(); }
  }
</script>
