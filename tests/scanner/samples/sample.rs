//! A word counter, written against the Rust reference.
use std::collections::HashMap;
use std::io::{self, BufRead};

/// Counts words of the input; `min` is the shortest word counted.
#[derive(Debug, Default)]
pub struct Counter {
    words: HashMap<String, usize>,
    min: usize,
}

impl Counter {
    /* A block comment /* nested */ still comment */
    pub fn new(min: usize) -> Self {
        Self { words: HashMap::new(), min }
    }

    pub fn add(&mut self, line: &str) {
        for word in line.split_whitespace() {
            if word.len() >= self.min {
                *self.words.entry(word.to_lowercase()).or_insert(0) += 1;
            }
        }
    }
}

fn main() -> io::Result<()> {
    let mut counter = Counter::new(3);
    let raw = r#"a "quoted" word"#;
    let bytes = b"bytes\n";
    let c = 'x';
    let lifetime: &'static str = "static";
    counter.add(raw);
    for line in io::stdin().lock().lines() {
        counter.add(&line?);
    }
    let total: usize = counter.words.values().sum();
    println!("{} words, {} distinct, {:?} {}", total, counter.words.len(), bytes, c);
    let mask = 0xFF_u8 & 0b1010;
    let big = 1_000_000i64 + 2.5e3 as i64;
    assert!(mask > 0 && big > 0, "{lifetime}");
    Ok(())
}
