// An inventory of parts, written against the Scala 3 language reference.
package sample.inventory

import scala.collection.mutable
import scala.util.{Failure, Success, Try}

/** A part kept in stock.
  *
  * @param name the part's name, as printed on its label
  * @param count how many are on the shelf
  */
final case class Part(name: String, count: Int, price: BigDecimal)

enum Unit_:
  case Piece, Box, Pallet

trait Priced:
  def price: BigDecimal
  def total(count: Int): BigDecimal = price * count

/* The store: a map from name to part.
   /* Comments nest in Scala. */
   Still a comment here. */
class Store(initial: Seq[Part]) extends AnyRef:
  private val parts = mutable.Map.from(initial.map(p => p.name -> p))
  private var changes = 0L

  def add(p: Part): Unit =
    parts.updateWith(p.name) {
      case Some(old) => Some(old.copy(count = old.count + p.count))
      case None      => Some(p)
    }
    changes += 1

  def take(name: String, n: Int): Try[Part] =
    parts.get(name) match
      case Some(p) if p.count >= n =>
        val left = p.copy(count = p.count - n)
        parts(name) = left
        Success(left)
      case Some(p) => Failure(IllegalStateException(s"only ${p.count} of $name"))
      case None    => Failure(NoSuchElementException("no part \"" + name + "\""))

  def report: String =
    val lines = for (name, p) <- parts.toSeq.sortBy(_._1) yield f"$name%-12s ${p.count}%5d"
    lines.mkString("\n")

object Store:
  val Separator = ','
  val Mask = 0xFF_FF
  val Rate = 1.5e-3
  val help = """Usage: store [options]
    |  --add NAME COUNT   adds parts
    |  --take NAME COUNT  takes parts""".stripMargin

  given Ordering[Part] = Ordering.by(_.name)

  extension (s: Store)
    def isEmpty: Boolean = s.report.isEmpty

  @main def demo(args: String*): Unit =
    val store = Store(Seq(Part("bolt", 100, BigDecimal("0.05")), Part("nut", 250, 0.02)))
    store.add(Part("washer", 40, 0.01)) // a new part
    println(store.take("bolt", 30).map(_.count).getOrElse(-1))
    println(store.report)
