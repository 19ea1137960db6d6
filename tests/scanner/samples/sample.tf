# A small network and a bucket per environment, written against the Terraform
# language reference: blocks, arguments, expressions, templates and heredocs.
terraform {
  required_version = ">= 1.5.0"
  required_providers {
    aws = {
      source  = "hashicorp/aws"
      version = "~> 5.0"
    }
  }
}

/* Variables of the module, with their types and checks. */
variable "environments" {
  type        = list(string)
  default     = ["dev", "staging", "prod"]
  description = "The environments that get a bucket"
  validation {
    condition     = length(var.environments) > 0
    error_message = "Name at least one environment."
  }
}

variable "cidr" {
  type    = string
  default = "10.0.0.0/16" // the whole network
}

locals {
  prefix  = "acme-${terraform.workspace}"
  subnets = [for i in range(3) : cidrsubnet(var.cidr, 8, i)]
  tags = {
    Owner   = "platform"
    Managed = true
    Cost    = 0.5 * 2
  }
  upper_envs = { for e in var.environments : e => upper(e) if e != "dev" }
}

resource "aws_s3_bucket" "logs" {
  for_each = toset(var.environments)
  bucket   = "${local.prefix}-logs-${each.key}"
  tags     = merge(local.tags, { Name = "logs ${each.value}" })

  lifecycle {
    prevent_destroy = false
    ignore_changes  = [tags["Cost"]]
  }
}

resource "aws_iam_policy" "read" {
  name   = "${local.prefix}-read"
  policy = <<-EOT
    {
      "Version": "2012-10-17",
      "Statement": [{"Effect": "Allow", "Action": "s3:GetObject"}]
    }
  EOT
}

output "bucket_names" {
  value     = [for b in aws_s3_bucket.logs : b.bucket]
  sensitive = false
}

module "network" {
  source     = "./modules/network"
  cidr_block = var.cidr
  count      = var.cidr == "" ? 0 : 1
  depends_on = [aws_s3_bucket.logs]
}
