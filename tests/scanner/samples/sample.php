<!DOCTYPE html>
<html lang="en">
<head>
  <title><?= htmlspecialchars($title) ?></title>
  <!-- the page's style -->
  <link rel="stylesheet" href="style.css">
</head>
<body>
<?php
// Lists the items of an order, one row each.
declare(strict_types=1);

namespace Shop\Orders;

/**
 * An order line: a product, a quantity and a unit price in cents.
 */
final class Line
{
    public function __construct(
        private string $product,
        private int $quantity = 1,
        private int $cents = 0,
    ) {}

    public function total(): int
    {
        return $this->quantity * $this->cents; # whole cents
    }

    public function label(): string
    {
        $name = ucfirst($this->product);
        return "{$name} x {$this->quantity}";
    }
}

/* Lines of the order, read from the request. */
$lines = [
    new Line('apple', 3, 45),
    new Line("pear", 2, 60),
    new Line('plum\'s', quantity: 10, cents: 12),
];
$sum = array_sum(array_map(fn (Line $l): int => $l->total(), $lines));
$text = <<<EOT
  Order of {$sum} cents
  EOT;
if ($sum > 0x1F4 && count($lines) !== 0) {
    printf('%d lines, %.2f in all', count($lines), $sum / 100);
} elseif ($sum === 0) {
    echo 'empty';
} else {
    throw new \RuntimeException("negative: $sum");
}
?>
<ul>
<?php foreach ($lines as $line): ?>
  <li class="line"><?= $line->label() ?></li>
<?php endforeach; ?>
</ul>
<p>Don't forget to check out.</p>
</body>
</html>
