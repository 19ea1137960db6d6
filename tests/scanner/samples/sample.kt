// A bounded stack, written against the Kotlin language reference.
package sample.collections

import kotlin.math.max

/**
 * Keeps at most [limit] items; the oldest drop out.
 * @param limit the most items kept
 */
class BoundedStack<T>(private val limit: Int) : Iterable<T> {
    private val items = ArrayDeque<T>()

    fun push(item: T) {
        if (items.size == limit) items.removeFirst() /* drop the oldest */
        items.addLast(item)
    }

    fun pop(): T? = items.removeLastOrNull()

    override fun iterator(): Iterator<T> = items.iterator()
}

fun main() {
    val stack = BoundedStack<String>(max(2, 0x3))
    for (word in listOf("a", "b's", "c")) stack.push(word)
    val sep = ','
    val text = """
        Raw "text" // not a comment
    """
    println("top: ${stack.pop()} of ${stack.count()}$sep ${text.trim()}")
    val big = 1_000_000L
    when {
        big > 10 -> println("big")
        else -> println('x')
    }
}
